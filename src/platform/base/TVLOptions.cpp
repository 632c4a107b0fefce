#include "TVLOptions.h"

#include "TVLSettingsFile_p.h"
#include "TVLStoredValue_p.h"

#include <QCoreApplication>
#include <QSettings>

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString DefaultTextEncodingKey = u"ImportExport/DefaultTextEncoding"_s;

/** A default that is only known when the application runs. */
using FontDefault = QFont (*)();

QFont applicationFont()
{
    return QFont();
}

constexpr TVLSettingRow<TVLOptions::Flag, bool> FlagRows[] = {
    {TVLOptions::PreviousExitedNormally, u"General/PreviousExitedNormally", true},
    {TVLOptions::ImportHtmlAsText, u"ImportExport/ImportHtmlAsText", false},
    {TVLOptions::OnlyDisplayableFormats, u"ImportExport/OnlyDisplayableFormats", false},
    {TVLOptions::RemoveInvalidRtfCharacters, u"ImportExport/RemoveInvalidRtfCharacters", false},
    {TVLOptions::SplitFirstLineOfNotes, u"ImportExport/SplitFirstLineOfNotes", true},
    {TVLOptions::TreatTextWithChildrenAsFolder, u"Navigation/TreatTextWithChildrenAsFolder", true},
    {TVLOptions::DropOnItemsInLists, u"Navigation/DropOnItemsInLists", false},
};

constexpr TVLSettingRow<TVLOptions::Int, int> IntRows[] = {
    {TVLOptions::AutoSaveSeconds, u"General/AutoSaveSeconds", 10},
};

constexpr TVLSettingRow<TVLOptions::Font, FontDefault> FontRows[] = {
    {TVLOptions::DefaultFont, u"TextEditing/DefaultFont", applicationFont},
};

// The compiler demands that a switch names every enumerator, and the assertions below demand a row
// for whatever a switch names. So no option can be added without its key and default.

constexpr bool isOption(TVLOptions::Flag flag)
{
    switch (flag) {
    case TVLOptions::PreviousExitedNormally:
    case TVLOptions::ImportHtmlAsText:
    case TVLOptions::OnlyDisplayableFormats:
    case TVLOptions::RemoveInvalidRtfCharacters:
    case TVLOptions::SplitFirstLineOfNotes:
    case TVLOptions::TreatTextWithChildrenAsFolder:
    case TVLOptions::DropOnItemsInLists:
        return true;
    }
    return false;
}

constexpr bool isOption(TVLOptions::Int number)
{
    switch (number) {
    case TVLOptions::AutoSaveSeconds:
        return true;
    }
    return false;
}

constexpr bool isOption(TVLOptions::Font font)
{
    switch (font) {
    case TVLOptions::DefaultFont:
        return true;
    }
    return false;
}

/** Whether every option stands in a table once, and nothing else does. */
template <typename Option, typename Value, std::size_t Size>
constexpr bool isComplete(const TVLSettingRow<Option, Value> (&table)[Size])
{
    constexpr int HighestNumber = 255;
    for (const TVLSettingRow<Option, Value> &row : table) {
        if (row.setting < 0 || row.setting > HighestNumber)
            return false;
    }
    for (int number = 0; number <= HighestNumber; ++number) {
        const Option option = Option(number);
        const auto rows = std::count_if(std::begin(table), std::end(table),
                                        [=](const auto &row) { return row.setting == option; });
        if (rows != (isOption(option) ? 1 : 0))
            return false;
    }
    return true;
}

static_assert(isComplete(FlagRows), "every flag has one key and default");
static_assert(isComplete(IntRows), "every number has one key and default");
static_assert(isComplete(FontRows), "every font has one key and default");

template <typename Option, typename Value, std::size_t Size>
const TVLSettingRow<Option, Value> &rowOf(const TVLSettingRow<Option, Value> (&table)[Size],
                                          Option option)
{
    const TVLSettingRow<Option, Value> *row = tvlFindSetting(table, option);
    Q_ASSERT_X(row, "TVLOptions", "no such option");
    return *row;
}

/** Whether an option can have a value. */
bool isInRange(TVLOptions::Int number, int value)
{
    switch (number) {
    case TVLOptions::AutoSaveSeconds:
        // A timer's time is milliseconds, and an int.
        return value >= 0 && value <= std::numeric_limits<int>::max() / 1000;
    }
    return true;
}

QString groupOf(const QString &key)
{
    return key.section(u'/', 0, 0);
}

template <typename Option, typename Value, std::size_t Size>
QStringList groupsOf(const TVLSettingRow<Option, Value> (&table)[Size])
{
    QStringList groups;
    for (const TVLSettingRow<Option, Value> &row : table)
        groups += groupOf(row.key.toString());
    return groups;
}

QStringList groupsOf(const QSettings &settings)
{
    QStringList groups;
    const QStringList keys = settings.allKeys();
    for (const QString &key : keys)
        groups += groupOf(key);
    return groups;
}

/** Whether a stored value, which may have become a text on its way through the file, is @p value.
 */
bool isSameValue(QVariant stored, const QVariant &value)
{
    if (stored.metaType() != value.metaType() && !stored.convert(value.metaType()))
        return false;
    return stored == value;
}

std::unique_ptr<QSettings> openSettings(const QString &path)
{
    if (path.isEmpty()) {
        return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                           u"Tavelinor"_s, u"Tavelinor"_s);
    }
    return std::make_unique<QSettings>(tvlSettingsPath(path), QSettings::IniFormat);
}

std::unique_ptr<TVLOptions> &applicationOptions()
{
    static std::unique_ptr<TVLOptions> options;
    return options;
}

} // namespace

TVLOptions::ChangeBatch::ChangeBatch(TVLOptions *options)
    : mOptions(options)
{
    ++mOptions->mBatchDepth;
}

TVLOptions::ChangeBatch::~ChangeBatch()
{
    if (--mOptions->mBatchDepth == 0)
        mOptions->announcePendingGroups();
}

TVLOptions::TVLOptions()
    : mSettings(openSettings({}))
{
}

TVLOptions::~TVLOptions()
{
    tvlRemoveLeftOverGuard(filePath());
}

bool TVLOptions::value(Flag flag) const
{
    return tvlStoredOr(*mSettings, keyText(flag), tvlStoredFlag, defaultValue(flag));
}

int TVLOptions::value(Int number) const
{
    const int stored = tvlStoredOr(*mSettings, keyText(number), tvlStoredInt, defaultValue(number));
    return isInRange(number, stored) ? stored : defaultValue(number);
}

QFont TVLOptions::value(Font font) const
{
    return tvlStoredOr(*mSettings, keyText(font), tvlStoredExactly<QFont>, defaultValue(font));
}

void TVLOptions::setValue(Flag flag, bool value)
{
    store(keyText(flag), value, this->value(flag) != value);
}

void TVLOptions::setValue(Int number, int value)
{
    store(keyText(number), value, this->value(number) != value);
}

void TVLOptions::setValue(Font font, const QFont &value)
{
    store(keyText(font), value, this->value(font) != value);
}

bool TVLOptions::defaultValue(Flag flag)
{
    return rowOf(FlagRows, flag).defaultValue;
}

int TVLOptions::defaultValue(Int number)
{
    return rowOf(IntRows, number).defaultValue;
}

QFont TVLOptions::defaultValue(Font font)
{
    return rowOf(FontRows, font).defaultValue();
}

QString TVLOptions::keyText(Flag flag)
{
    return rowOf(FlagRows, flag).key.toString();
}

QString TVLOptions::keyText(Int number)
{
    return rowOf(IntRows, number).key.toString();
}

QString TVLOptions::keyText(Font font)
{
    return rowOf(FontRows, font).key.toString();
}

QByteArray TVLOptions::defaultTextEncoding() const
{
    return value(DefaultTextEncodingKey).toByteArray();
}

void TVLOptions::setDefaultTextEncoding(const QByteArray &codec)
{
    if (codec != defaultTextEncoding())
        setValue(DefaultTextEncodingKey, codec);
}

QVariant TVLOptions::value(const QString &key, const QVariant &defaultValue) const
{
    return mSettings->value(key, defaultValue);
}

void TVLOptions::setValue(const QString &key, const QVariant &value)
{
    store(key, value, !mSettings->contains(key) || !isSameValue(mSettings->value(key), value));
}

QString TVLOptions::filePath() const
{
    return mSettings->fileName();
}

void TVLOptions::setFilePath(const QString &path)
{
    QStringList groups =
        groupsOf(FlagRows) + groupsOf(IntRows) + groupsOf(FontRows) + groupsOf(*mSettings);
    tvlRemoveLeftOverGuard(filePath());
    mSettings = openSettings(path);
    groups += groupsOf(*mSettings);
    announce(groups);
}

bool TVLOptions::sync()
{
    tvlRemoveLeftOverGuard(filePath());
    mSettings->sync();
    return mSettings->status() == QSettings::NoError;
}

void TVLOptions::store(const QString &key, const QVariant &value, bool hasChanged)
{
    // Stored even if unchanged: a default becomes the user's choice, a value of a wrong kind goes.
    tvlRemoveLeftOverGuard(filePath());
    mSettings->setValue(key, value);
    if (hasChanged)
        announce({groupOf(key)});
}

void TVLOptions::announce(const QStringList &groups)
{
    for (const QString &group : groups) {
        if (!mPendingGroups.contains(group))
            mPendingGroups += group;
    }
    if (mBatchDepth == 0)
        announcePendingGroups();
}

void TVLOptions::announcePendingGroups()
{
    // Taken first: a receiver may change options itself.
    const QStringList groups = std::exchange(mPendingGroups, {});
    if (!groups.isEmpty())
        Q_EMIT groupsChanged(groups);
}

TVLOptions *tvlOptions()
{
    std::unique_ptr<TVLOptions> &options = applicationOptions();
    if (!options) {
        options.reset(new TVLOptions);
        qAddPostRoutine([] { applicationOptions().reset(); });
    }
    return options.get();
}
