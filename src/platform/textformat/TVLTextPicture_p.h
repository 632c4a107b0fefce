#pragma once

#include <QByteArray>

class QString;
class QTextDocument;

/**
 * A picture of a document as other programs know it: the bytes of a PNG or JPEG file as they are,
 * any other picture as PNG. Bytes that nobody can read come as they are, a picture that isn't
 * there is empty.
 */
[[nodiscard]] QByteArray tvlPortablePicture(const QTextDocument *document, const QString &name);

/** Whether bytes begin as a PNG file does. */
[[nodiscard]] bool tvlIsPng(const QByteArray &bytes);
/** Whether bytes begin as a JPEG file does. */
[[nodiscard]] bool tvlIsJpeg(const QByteArray &bytes);
