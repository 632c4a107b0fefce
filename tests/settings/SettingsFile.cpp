#include "SettingsFile.h"

#include <QDir>
#include <QFile>
#include <QSettings>

using namespace Qt::StringLiterals;

SettingsFile::SettingsFile(const QString &name)
    : mName(name)
{
    if (!mFolder.isValid() || !mCopies.isValid())
        qFatal("no temporary folder");
}

QString SettingsFile::path() const
{
    return pathBeside(mName);
}

QString SettingsFile::pathBeside(const QString &name) const
{
    return mFolder.filePath(name);
}

QStringList SettingsFile::names() const
{
    return QDir(mFolder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

void SettingsFile::write(const QByteArray &content) const
{
    QFile file(path());
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("can't write a test's file");
}

bool SettingsFile::exists() const
{
    return QFile::exists(path());
}

QByteArray SettingsFile::content() const
{
    QFile file(path());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QVariant SettingsFile::storedValue(const QString &key) const
{
    return QSettings(copy(), QSettings::IniFormat).value(key);
}

QString SettingsFile::copy() const
{
    const QString path = mCopies.filePath(QString::number(++mCopyCount) + u".ini"_s);
    if (exists() && !QFile::copy(this->path(), path))
        qFatal("can't copy a test's file");
    return path;
}

QByteArray iniText(const QString &key, const QByteArray &value)
{
    const bool hasGroup = key.contains(u'/');
    const QString group = hasGroup ? key.section(u'/', 0, 0) : u"General"_s;
    QString name = hasGroup ? key.section(u'/', 1) : key;
    name.replace(u'/', u'\\');
    return '[' + group.toUtf8() + "]\n" + name.toUtf8() + '=' + value + '\n';
}
