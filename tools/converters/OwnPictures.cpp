#include "OwnPictures.h"

#include "TVLCoreUtil.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 LargestPicture = qint64(100) << 20;

struct PictureBytes
{
    QByteArray bytes;
    QString suffix; ///< Empty for what is no picture.
};

/** Pictures of the two kinds that rich text has; others become one of them. */
PictureBytes fitForRichText(const QByteArray &bytes)
{
    if (bytes.startsWith("\x89PNG"))
        return {bytes, u"png"_s};
    if (bytes.startsWith("\xff\xd8\xff"))
        return {bytes, u"jpg"_s};
    const QImage image = QImage::fromData(bytes);
    QBuffer buffer;
    if (image.isNull() || !buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "png"))
        return {};
    return {buffer.data(), u"png"_s};
}

/** The bytes in an address of the kind `data:image/png;base64,...`. */
QByteArray bytesInAddress(const QString &address)
{
    const qsizetype comma = address.indexOf(u',');
    if (comma < 0)
        return {};
    const QByteArray content =
        QByteArray::fromPercentEncoding(address.sliced(comma + 1).toLatin1());
    return address.first(comma).endsWith(u";base64") ? QByteArray::fromBase64(content) : content;
}

class PictureKeeper
{
public:
    PictureKeeper(const QString &sourceFolder, const QString &workFolder)
        : mSourceFolder(sourceFolder)
        , mWorkFolder(workFolder)
    {
    }

    [[nodiscard]] QJsonValue kept(const QJsonValue &value);

private:
    [[nodiscard]] QJsonValue keptPicture(const QJsonObject &picture);
    [[nodiscard]] QByteArray bytesAt(const QString &address) const;

    QString mSourceFolder;
    QString mWorkFolder;
    int mCount = 0;
};

QJsonValue PictureKeeper::kept(const QJsonValue &value)
{
    if (value.isArray()) {
        QJsonArray array;
        const QJsonArray parts = value.toArray();
        for (const auto &part : parts)
            array.append(kept(part));
        return array;
    }
    if (!value.isObject())
        return value;
    QJsonObject object = value.toObject();
    if (object.value(u"t").toString() == u"Image")
        return keptPicture(object);
    for (auto member = object.begin(); member != object.end(); ++member)
        member.value() = kept(member.value());
    return object;
}

/** A picture has its attributes, its description, and its address with a title. */
QJsonValue PictureKeeper::keptPicture(const QJsonObject &picture)
{
    QJsonArray parts = picture.value(u"c").toArray();
    const QString address = parts.at(2).toArray().at(0).toString();
    const PictureBytes fit = fitForRichText(bytesAt(address));
    const QString path = u"%1/picture%2.%3"_s.arg(mWorkFolder).arg(++mCount).arg(fit.suffix);
    if (fit.suffix.isEmpty() || !TVLCoreUtil::WriteBinaryFile(fit.bytes, path, nullptr)) {
        return QJsonObject{{u"t"_s, u"Span"_s},
                           {u"c"_s, QJsonArray{parts.at(0), kept(parts.at(1))}}};
    }
    parts[2] = QJsonArray{path, QString()};
    return QJsonObject{{u"t"_s, u"Image"_s}, {u"c"_s, parts}};
}

QByteArray PictureKeeper::bytesAt(const QString &address) const
{
    if (address.startsWith(u"data:"))
        return bytesInAddress(address);
    const QString path =
        QDir(mSourceFolder).absoluteFilePath(QUrl::fromPercentEncoding(address.toUtf8()));
    const bool isOwn = TVLCoreUtil::IsSameOrInside(path, mSourceFolder)
        || TVLCoreUtil::IsSameOrInside(path, mWorkFolder);
    const QFileInfo info(path);
    return isOwn && info.isFile() && info.size() <= LargestPicture
        ? TVLCoreUtil::ReadBinaryFile(path)
        : QByteArray();
}

} // namespace

QByteArray withOwnPictures(const QByteArray &json, const QString &sourceFolder,
                           const QString &workFolder)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return {};
    PictureKeeper keeper(sourceFolder, workFolder);
    return QJsonDocument(keeper.kept(document.object()).toObject()).toJson(QJsonDocument::Compact);
}
