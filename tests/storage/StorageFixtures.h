#pragma once

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

using namespace Qt::StringLiterals;

class TVLProjectModel;

/** The second copy of a binder, from the project's folder. */
const QString AutosaveFile = u"Files/binder.autosave"_s;

/** One file in a zip. */
struct ZipEntry
{
    QString name;
    QByteArray content;
    QFile::Permissions permissions;
};

/** A zip that holds the given files, in that order. */
[[nodiscard]] QByteArray zipOf(const QList<ZipEntry> &entries);
/** A zip that holds one file. */
[[nodiscard]] QByteArray zipOf(const QString &name, const QByteArray &content);
[[nodiscard]] QList<ZipEntry> zipEntries(const QByteArray &zip);

/** The uuid that itemXml() gives to the item of an id. */
[[nodiscard]] QUuid uuidOf(int id);
/** A `BinderItem` with all that is in it. */
[[nodiscard]] QByteArray itemXml(int id, const QByteArray &type, const QByteArray &title,
                                 const QByteArray &children = {});

/** Sets the time of a file a number of minutes back. */
void setAge(const QString &filePath, int minutes);

/** A line for each item in binder order: a blank for each level, the id, the title. */
[[nodiscard]] QStringList outlineOf(const TVLProjectModel *model);
/** Whether look-ups by id and by uuid find exactly the items of the tree. */
[[nodiscard]] bool mapsAgreeWithTree(const TVLProjectModel *model);
