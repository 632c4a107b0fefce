#include "TTextDoc.h"

#include "TVLCoreUtil.h"
#include "TVLTextFormat.h"
#include "TVLTextPicture_p.h"
#include "TVLTextRuns_p.h"

#include <QCryptographicHash>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <array>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/** What stands in the text of a picture, or on both sides of a run. */
struct Insertion
{
    int position;
    int length; ///< Of what goes.
    QString text;
    QTextCharFormat format;
};

/** Insertions come in the order of the text; made from its end they don't move each other. */
void insertAll(QTextDocument *document, const std::vector<Insertion> &insertions)
{
    QTextCursor cursor(document);
    cursor.beginEditBlock();
    for (auto it = insertions.crbegin(); it != insertions.crend(); ++it) {
        cursor.setPosition(it->position);
        cursor.setPosition(it->position + it->length, QTextCursor::KeepAnchor);
        cursor.insertText(it->text, it->format);
    }
    cursor.endEditBlock();
}

/** The file's name says what is in it: a picture that is written again takes its own place. */
QString fileNameOf(const QByteArray &picture)
{
    constexpr qsizetype Digits = 12;
    const QByteArray hash = QCryptographicHash::hash(picture, QCryptographicHash::Sha1).toHex();
    return u"picture-%1.%2"_s.arg(QString::fromLatin1(hash.left(Digits)),
                                  tvlIsJpeg(picture) ? u"jpg"_s : u"png"_s);
}

/** The sign of MultiMarkdown for a format, and whether a format has that. */
struct Sign
{
    QStringView text;
    bool (*isOn)(const QTextCharFormat &);
};

constexpr std::array Signs = {
    Sign{u"**", [](const QTextCharFormat &format) { return format.fontWeight() > QFont::Medium; }},
    Sign{u"*", [](const QTextCharFormat &format) { return format.fontItalic(); }},
    Sign{u"^",
         [](const QTextCharFormat &format) {
             return format.verticalAlignment() == QTextCharFormat::AlignSuperScript;
         }},
    Sign{u"~",
         [](const QTextCharFormat &format) {
             return format.verticalAlignment() == QTextCharFormat::AlignSubScript;
         }},
};

/**
 * The runs of a paragraph that have a sign, without the white space at their ends, which the signs
 * must not touch. A sign has the format of its run, so that it doesn't part the run of another one.
 */
void appendRuns(const QTextBlock &block, const Sign &sign, std::vector<Insertion> *insertions)
{
    const QString text = block.text();
    int start = -1;
    int end = 0;
    QTextCharFormat first;
    QTextCharFormat last;
    const auto endRun = [&] {
        if (start < 0)
            return;
        while (start < end && text.at(start).isSpace())
            ++start;
        while (end > start && text.at(end - 1).isSpace())
            --end;
        if (start < end) {
            insertions->push_back({block.position() + start, 0, sign.text.toString(), first});
            insertions->push_back({block.position() + end, 0, sign.text.toString(), last});
        }
        start = -1;
    };
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        if (!sign.isOn(fragment.charFormat())) {
            endRun();
            continue;
        }
        last = fragment.charFormat();
        if (start < 0) {
            start = fragment.position() - block.position();
            first = last;
        }
        end = fragment.position() - block.position() + fragment.length();
    }
    endRun();
}

} // namespace

void TTextDoc::exportImagesToMmd(QTextDocument *document, const QString &directory)
{
    if (!document)
        return;
    std::vector<Insertion> insertions;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextCharFormat format = it.fragment().charFormat();
            if (!format.isImageFormat())
                continue;
            const QByteArray picture = tvlPortablePicture(document, format.toImageFormat().name());
            const QString name = picture.isEmpty() ? QString() : fileNameOf(picture);
            const bool isWritten = !name.isEmpty()
                && TVLCoreUtil::WriteBinaryFile(picture, directory + u'/' + name, nullptr);
            const QString words = format.property(QTextFormat::ImageAltText).toString();
            const QString text = isWritten ? u"![%1](%2)"_s.arg(words, name) : words;
            insertions.push_back({it.fragment().position(), it.fragment().length(),
                                  text.repeated(it.fragment().length()), QTextCharFormat()});
        }
    }
    insertAll(document, insertions);
}

void TTextDoc::charFormatToMmd(QTextDocument *document)
{
    if (!document)
        return;
    // From the outermost sign to the innermost, so that they end in the order they began in.
    for (auto sign = Signs.crbegin(); sign != Signs.crend(); ++sign) {
        std::vector<Insertion> insertions;
        for (QTextBlock block = document->begin(); block.isValid(); block = block.next())
            appendRuns(block, *sign, &insertions);
        insertAll(document, insertions);
    }
}
