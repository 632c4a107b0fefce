#include "TVLSettings.h"

#include "TVLRegularFile.h"
#include "TVLSettingsFile_p.h"
#include "TVLStoredFormat_p.h"
#include "TVLStoredValue_p.h"

#include <QEvent>
#include <QFile>
#include <QTemporaryFile>

#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/** Settings parse a section when something is asked of it. */
void parseAll(const QSettings &settings)
{
    static_cast<void>(settings.allKeys());
}

/** Whether settings read everything that a file of this content holds. */
bool isReadWhole(const QByteArray &content)
{
    // Bytes that aren't UTF-8 would be replaced silently.
    if (!QUtf8StringView(content).isValidUtf8() || content.contains('\0'))
        return false;
    // A copy, because of all objects on a file only the first one is told of its errors.
    QTemporaryFile copy;
    if (!copy.open() || copy.write(content) != content.size() || !copy.flush())
        return false;
    const QSettings settings(copy.fileName(), QSettings::IniFormat);
    parseAll(settings);
    return settings.status() == QSettings::NoError;
}

bool hasContent(const QString &path, const QByteArray &content)
{
    TVLRegularFile file(path);
    return file.open(QIODevice::ReadOnly) && file.readAll() == content;
}

/**
 * Makes sure that there is a copy of a file beside it, under the first name that is free. False if
 * it can't be made.
 */
bool keepDamagedFile(const QString &path, const QByteArray &content)
{
    QString copyPath = path + u".damaged"_s;
    for (int number = 2; QFile::exists(copyPath); ++number) {
        // Kept before, if nothing was written since.
        if (hasContent(copyPath, content))
            return true;
        copyPath = path + u".damaged-"_s + QString::number(number);
    }
    return QFile::copy(path, copyPath) && hasContent(copyPath, content);
}

/**
 * Whether a file may be written anew: all of it can be read, or there is a copy of it. One that
 * can't be opened isn't written by QSettings either.
 */
bool isSafeToWrite(const QString &path)
{
    TVLRegularFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return true;
    const QByteArray content = file.readAll();
    return file.error() == QFileDevice::NoError
        && (isReadWhole(content) || keepDamagedFile(path, content));
}

} // namespace

TVLSettings::TVLSettings(const QString &path, QObject *parent)
    : QSettings(tvlSettingsPath(path), QSettings::IniFormat, parent)
{
}

TVLSettings::~TVLSettings()
{
    tvlRemoveLeftOverGuard(fileName());
}

bool TVLSettings::defaultValue(FlagSetting) const
{
    return false;
}

int TVLSettings::defaultValue(IntSetting) const
{
    return 0;
}

double TVLSettings::defaultValue(RealSetting) const
{
    return 0;
}

QString TVLSettings::defaultValue(StringSetting) const
{
    return {};
}

QStringList TVLSettings::defaultValue(StringListSetting) const
{
    return {};
}

QColor TVLSettings::defaultValue(ColorSetting) const
{
    return {};
}

QDateTime TVLSettings::defaultValue(DateTimeSetting) const
{
    return {};
}

QFont TVLSettings::defaultValue(FontSetting) const
{
    return {};
}

QList<int> TVLSettings::defaultValue(IntListSetting) const
{
    return {};
}

QByteArray TVLSettings::defaultValue(ByteArraySetting) const
{
    return {};
}

QTextCharFormat TVLSettings::defaultValue(TextCharFormatSetting) const
{
    return {};
}

QTextBlockFormat TVLSettings::defaultValue(TextBlockFormatSetting) const
{
    return {};
}

QString TVLSettings::keyText(FlagSetting) const
{
    return {};
}

QString TVLSettings::keyText(IntSetting) const
{
    return {};
}

QString TVLSettings::keyText(RealSetting) const
{
    return {};
}

QString TVLSettings::keyText(StringSetting) const
{
    return {};
}

QString TVLSettings::keyText(StringListSetting) const
{
    return {};
}

QString TVLSettings::keyText(ColorSetting) const
{
    return {};
}

QString TVLSettings::keyText(DateTimeSetting) const
{
    return {};
}

QString TVLSettings::keyText(FontSetting) const
{
    return {};
}

QString TVLSettings::keyText(IntListSetting) const
{
    return {};
}

QString TVLSettings::keyText(ByteArraySetting) const
{
    return {};
}

QString TVLSettings::keyText(TextCharFormatSetting) const
{
    return {};
}

QString TVLSettings::keyText(TextBlockFormatSetting) const
{
    return {};
}

bool TVLSettings::value(FlagSetting setting) const
{
    return tvlStoredOr(*this, keyText(setting), tvlStoredFlag, defaultValue(setting));
}

int TVLSettings::value(IntSetting setting) const
{
    return tvlStoredOr(*this, keyText(setting), tvlStoredInt, defaultValue(setting));
}

double TVLSettings::value(RealSetting setting) const
{
    return tvlStoredOr(*this, keyText(setting), tvlStoredReal, defaultValue(setting));
}

QString TVLSettings::value(StringSetting setting) const
{
    return tvlStoredOr(*this, keyText(setting), tvlStoredText, defaultValue(setting));
}

QStringList TVLSettings::value(StringListSetting setting) const
{
    return tvlStoredOr(*this, keyText(setting), tvlStoredTexts, defaultValue(setting));
}

QColor TVLSettings::value(ColorSetting setting) const
{
    return tvlStoredOr(*this, keyText(setting), tvlStoredExactly<QColor>, defaultValue(setting));
}

QDateTime TVLSettings::value(DateTimeSetting setting) const
{
    return tvlStoredOr(*this, keyText(setting), tvlStoredExactly<QDateTime>, defaultValue(setting));
}

QFont TVLSettings::value(FontSetting setting) const
{
    return tvlStoredOr(*this, keyText(setting), tvlStoredExactly<QFont>, defaultValue(setting));
}

QList<int> TVLSettings::value(IntListSetting setting) const
{
    return tvlStoredOr(*this, keyText(setting), tvlStoredInts, defaultValue(setting));
}

QByteArray TVLSettings::value(ByteArraySetting setting) const
{
    return tvlStoredOr(*this, keyText(setting), tvlStoredExactly<QByteArray>,
                       defaultValue(setting));
}

QTextCharFormat TVLSettings::value(TextCharFormatSetting setting) const
{
    return tvlStoredOr(*this, keyText(setting), tvlStoredCharFormat, defaultValue(setting));
}

QTextBlockFormat TVLSettings::value(TextBlockFormatSetting setting) const
{
    return tvlStoredOr(*this, keyText(setting), tvlStoredBlockFormat, defaultValue(setting));
}

void TVLSettings::setValue(FlagSetting setting, bool value)
{
    setValue(keyText(setting), value);
}

void TVLSettings::setValue(IntSetting setting, int value)
{
    setValue(keyText(setting), value);
}

void TVLSettings::setValue(RealSetting setting, double value)
{
    setValue(keyText(setting), value);
}

void TVLSettings::setValue(StringSetting setting, const QString &value)
{
    setValue(keyText(setting), value);
}

void TVLSettings::setValue(StringListSetting setting, const QStringList &value)
{
    setValue(keyText(setting), value);
}

void TVLSettings::setValue(ColorSetting setting, const QColor &value)
{
    setValue(keyText(setting), value);
}

void TVLSettings::setValue(DateTimeSetting setting, const QDateTime &value)
{
    setValue(keyText(setting), value);
}

void TVLSettings::setValue(FontSetting setting, const QFont &value)
{
    setValue(keyText(setting), value);
}

void TVLSettings::setValue(IntListSetting setting, const QList<int> &value)
{
    setValue(keyText(setting), tvlStorableInts(value));
}

void TVLSettings::setValue(ByteArraySetting setting, const QByteArray &value)
{
    setValue(keyText(setting), value);
}

void TVLSettings::setValue(TextCharFormatSetting setting, const QTextCharFormat &value)
{
    setValue(keyText(setting), tvlStorableFormat(value));
}

void TVLSettings::setValue(TextBlockFormatSetting setting, const QTextBlockFormat &value)
{
    setValue(keyText(setting), tvlStorableFormat(value));
}

void TVLSettings::setValue(const QString &key, const QVariant &value)
{
    if (key.isEmpty())
        return;
    const QVariant stored = QSettings::value(key);
    const bool isStored = stored.isValid() && stored.metaType() == value.metaType();
    if ((!isStored || stored != value) && mayWrite())
        QSettings::setValue(key, value);
}

bool TVLSettings::contains(const QString &key) const
{
    return !key.isEmpty() && QSettings::contains(key);
}

void TVLSettings::remove(const QString &key)
{
    if (!key.isEmpty() && holds(key) && mayWrite())
        QSettings::remove(key);
}

void TVLSettings::clear()
{
    // What is outside the group goes too, and can't be seen from here.
    const bool isEmpty = group().isEmpty() && allKeys().isEmpty();
    if (!isEmpty && mayWrite())
        QSettings::clear();
}

void TVLSettings::sync()
{
    tvlRemoveLeftOverGuard(fileName());
    QSettings::sync();
}

bool TVLSettings::event(QEvent *event)
{
    if (event->type() == QEvent::UpdateRequest) // What is unwritten is about to be written.
        tvlRemoveLeftOverGuard(fileName());
    return QSettings::event(event);
}

bool TVLSettings::holds(const QString &key)
{
    if (QSettings::contains(key))
        return true;
    beginGroup(key);
    const bool hasKeysBelow = !allKeys().isEmpty();
    endGroup();
    return hasKeysBelow;
}

bool TVLSettings::saveToFile(const QString &path) const
{
    // Taken before the other file is cleared, because it may be this object's own.
    std::vector<std::pair<QString, QVariant>> entries;
    const QStringList keys = allKeys();
    for (const QString &key : keys)
        entries.emplace_back(key, QSettings::value(key));

    if (!isSafeToWrite(path))
        return false;
    // The first object on a file is told what was wrong with it, the second only of the writing.
    const QString targetPath = tvlSettingsPath(path);
    const QSettings replaced(targetPath, QSettings::IniFormat);
    parseAll(replaced);
    QSettings target(targetPath, QSettings::IniFormat);
    target.clear();
    for (const auto &[key, value] : entries)
        target.setValue(key, value);
    tvlRemoveLeftOverGuard(targetPath);
    target.sync();
    return target.status() == QSettings::NoError;
}

bool TVLSettings::mayWrite()
{
    if (!mIsSafeToWrite)
        mIsSafeToWrite = isSafeToWrite(fileName());
    return mIsSafeToWrite;
}
