#pragma once

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>

#include <memory>

using namespace Qt::StringLiterals;

/** The place of an ini file in a folder of its own, gone with the object. */
class SettingsFile
{
public:
    /** Names the file without making it. */
    explicit SettingsFile(const QString &name = u"ui.ini"_s);

    [[nodiscard]] QString path() const;
    /** The path of another file in the same folder. */
    [[nodiscard]] QString pathBeside(const QString &name) const;
    /** The names of all files in the folder, sorted. */
    [[nodiscard]] QStringList names() const;

    void write(const QByteArray &content) const;
    [[nodiscard]] bool exists() const;
    /** The file as it is on the disk. */
    [[nodiscard]] QByteArray content() const;

    /**
     * Settings on a copy of the file, so that they have nothing but what is on the disk: objects on
     * one file share what they have in memory. The copy has another name every time.
     */
    template <typename Settings>
    [[nodiscard]] std::unique_ptr<Settings> open() const
    {
        return std::make_unique<Settings>(copy());
    }
    /** What is on the disk under a key. */
    [[nodiscard]] QVariant storedValue(const QString &key) const;

private:
    [[nodiscard]] QString copy() const;

    QTemporaryDir mFolder;
    QTemporaryDir mCopies;
    mutable int mCopyCount = 0;
    QString mName;
};

/** The content of an ini file that has one entry, with its value in the file's own form. */
[[nodiscard]] QByteArray iniText(const QString &key, const QByteArray &value);
