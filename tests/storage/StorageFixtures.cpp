#include "StorageFixtures.h"

#include "TVLProjectModel.h"
#include "TVLProjectNode.h"

#include <QBuffer>
#include <QDateTime>

#include <private/qzipreader_p.h>
#include <private/qzipwriter_p.h>

using namespace Qt::StringLiterals;

QByteArray zipOf(const QList<ZipEntry> &entries)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QZipWriter zip(&buffer);
    for (const ZipEntry &entry : entries)
        zip.addFile(entry.name, entry.content);
    zip.close();
    return buffer.data();
}

QByteArray zipOf(const QString &name, const QByteArray &content)
{
    return zipOf({{name, content, {}}});
}

QList<ZipEntry> zipEntries(const QByteArray &zip)
{
    QBuffer buffer;
    buffer.setData(zip);
    buffer.open(QIODevice::ReadOnly);
    const QZipReader reader(&buffer);
    QList<ZipEntry> entries;
    const QList<QZipReader::FileInfo> infos = reader.fileInfoList();
    for (const QZipReader::FileInfo &info : infos)
        entries.append({info.filePath, reader.fileData(info.filePath), info.permissions});
    return entries;
}

QUuid uuidOf(int id)
{
    return QUuid(uint(id) + 1, 0x4711, 0x4abc, 0x8d, 0xef, 0, 1, 2, 3, 4, 5);
}

QByteArray itemXml(int id, const QByteArray &type, const QByteArray &title,
                   const QByteArray &children)
{
    QByteArray xml = "<BinderItem ID=\"" + QByteArray::number(id) + "\" UUID=\""
        + uuidOf(id).toByteArray(QUuid::WithoutBraces).toUpper()
        + "\" Created=\"2026-03-01 08:30:00 +0000\" Modified=\"2026-03-01 08:30:00 +0000\" Type=\""
        + type + "\"><Title>" + title + "</Title><MetaData/>";
    if (!children.isEmpty())
        xml += "<Children>" + children + "</Children>";
    return xml + "</BinderItem>\n";
}

void setAge(const QString &filePath, int minutes)
{
    QFile file(filePath);
    const QDateTime time = QDateTime::currentDateTime().addSecs(-60 * minutes);
    if (!file.open(QIODevice::ReadWrite)
        || !file.setFileTime(time, QFileDevice::FileModificationTime))
        qFatal("could not set the time of %s", qPrintable(filePath));
}

QStringList outlineOf(const TVLProjectModel *model)
{
    QStringList lines;
    tvlForEachNode(model->binderRoot(), [&lines](const TVLProjectNode *node) {
        const QString indentation(TVLProjectNode::childLevel(node) - 1, u' ');
        lines.append(u"%1%2 %3"_s.arg(indentation).arg(node->mId).arg(node->mTitle));
    });
    return lines;
}

bool mapsAgreeWithTree(const TVLProjectModel *model)
{
    QSet<QUuid> uuids;
    bool agree = true;
    tvlForEachNode(model->binderRoot(), [&](const TVLProjectNode *node) {
        uuids.insert(node->mUuid);
        agree = agree && model->hasNodeId(node->mId) && model->findNode(node->mId) == node
            && model->hasNodeUuid(node->mUuid) && model->findNodeByUuid(node->mUuid) == node;
    });
    return agree && uuids.size() == model->totalNodesCount() && model->uniqueUuids() == uuids;
}
