#include "TVLTextPicture_p.h"

#include <QBuffer>
#include <QImage>
#include <QTextDocument>
#include <QUrl>
#include <QVariant>

bool tvlIsPng(const QByteArray &bytes)
{
    return bytes.startsWith("\x89PNG");
}

bool tvlIsJpeg(const QByteArray &bytes)
{
    return bytes.startsWith("\xff\xd8\xff");
}

QByteArray tvlPortablePicture(const QTextDocument *document, const QString &name)
{
    const QVariant resource = document->resource(QTextDocument::ImageResource, QUrl(name));
    const bool isBytes = resource.userType() == QMetaType::QByteArray;
    const QByteArray bytes = resource.toByteArray();
    if (isBytes && (tvlIsPng(bytes) || tvlIsJpeg(bytes)))
        return bytes;
    // An image in memory has no bytes of its own.
    const QImage image = isBytes ? QImage::fromData(bytes) : resource.value<QImage>();
    if (image.isNull())
        return bytes;
    QByteArray png;
    QBuffer buffer(&png);
    image.save(&buffer, "PNG");
    return png;
}
