#include "TVLTextFiles.h"

#include "TVLTextDoc.h"
#include "TVLTextRtfReader.h"

#include <QFile>
#include <QStringDecoder>
#include <QStringEncoder>
#include <QTextCursor>
#include <QTextDocument>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

std::unique_ptr<QTextDocument> emptyDocument()
{
    auto document = std::make_unique<QTextDocument>();
    document->setUndoRedoEnabled(false);
    return document;
}

std::optional<QByteArray> readBytes(const QString &path, QString *error)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        QByteArray bytes = file.readAll();
        if (file.error() == QFileDevice::NoError)
            return bytes;
    }
    *error = file.errorString();
    return std::nullopt;
}

constexpr qsizetype LongestByteOrderMark = 4;

/** The text of bytes; nothing if some of them mean nothing. */
std::optional<QString> decode(const QByteArray &bytes)
{
    const QStringConverter::Encoding encoding =
        QStringConverter::encodingForData(bytes).value_or(QStringConverter::Utf8);
    // A decoder with a state would wait for the rest of a character that is cut off at the end.
    QStringDecoder decoder(encoding, QStringConverter::Flag::Stateless);
    QString text = decoder(bytes);
    // Decoders pass over some of what means nothing; then there are not as many bytes as there
    // were.
    QStringEncoder encoder(encoding, QStringConverter::Flag::Stateless);
    const QByteArray again = encoder(text);
    // A null character is that of another encoding, or of a file that isn't text at all.
    const bool isText = !decoder.hasError() && bytes.endsWith(again) && text.isValidUtf16()
        && bytes.size() - again.size() <= LongestByteOrderMark && !text.contains(QChar::Null);
    return isText ? std::optional(text) : std::nullopt;
}

void unifyLineEnds(QString *text)
{
    text->replace(u"\r\n"_s, u"\n"_s);
    text->replace(u'\r', u'\n');
    if (text->endsWith(u'\n'))
        text->chop(1);
}

} // namespace

std::unique_ptr<QTextDocument> tvlReadPlainTextFile(const QString &path, QString *error)
{
    const std::optional<QByteArray> bytes = readBytes(path, error);
    if (!bytes)
        return nullptr;
    std::optional<QString> text = decode(*bytes);
    if (!text) {
        *error = u"it isn't text in UTF-8, nor in another encoding with a byte order mark"_s;
        return nullptr;
    }
    unifyLineEnds(&*text);
    std::unique_ptr<QTextDocument> document = emptyDocument();
    QTextCursor(document.get()).insertText(*text);
    return document;
}

std::unique_ptr<QTextDocument> tvlReadRichTextFile(const QString &path, QString *error)
{
    const std::optional<QByteArray> bytes = readBytes(path, error);
    if (!bytes)
        return nullptr;
    std::unique_ptr<QTextDocument> document = emptyDocument();
    TVLTextRtfReader reader(document.get());
    if (!reader.read(*bytes)) {
        *error = reader.errorString();
        return nullptr;
    }
    TVLTextDoc::fromInlineMarkup(document.get());
    return document;
}
