#include "TVLTextEdits_p.h"

#include "TVLTextFormat.h"

#include <QTextCursor>
#include <QTextDocument>

namespace {

/** What a format has beyond that of text if it is one of a picture. */
constexpr int PictureProperties[] = {
    QTextFormat::ObjectType,  QTextFormat::ObjectIndex,  QTextFormat::ImageName,
    QTextFormat::ImageTitle,  QTextFormat::ImageAltText, QTextFormat::ImageWidth,
    QTextFormat::ImageHeight, QTextFormat::ImageQuality, TVLTextFormat::PictureKind,
};

} // namespace

void TVLTextEdits::setCharFormat(int position, int length, const QTextCharFormat &format)
{
    mFormats.push_back({FormatKind::Set, position, length, format});
}

void TVLTextEdits::mergeCharFormat(int position, int length, const QTextCharFormat &format)
{
    // Without a selection a cursor would only change what it types next.
    if (length > 0)
        mFormats.push_back({FormatKind::Merge, position, length, format});
}

void TVLTextEdits::setBlockCharFormat(int position, const QTextCharFormat &format)
{
    mFormats.push_back({FormatKind::SetOfBlock, position, 0, format});
}

void TVLTextEdits::insertText(int position, const QString &text, const QTextCharFormat &format)
{
    Q_ASSERT(mTexts.empty() || mTexts.back().mPosition <= position);
    QTextCharFormat textFormat = format;
    for (const int property : PictureProperties)
        textFormat.clearProperty(property);
    mTexts.push_back({position, 0, text, textFormat});
}

void TVLTextEdits::removeText(int position, int length)
{
    Q_ASSERT(mTexts.empty() || mTexts.back().mPosition <= position);
    mTexts.push_back({position, length, {}, {}});
}

void TVLTextEdits::apply(QTextDocument *document) const
{
    if (isEmpty())
        return;
    QTextCursor cursor(document);
    cursor.beginEditBlock();
    for (const FormatChange &change : mFormats) {
        cursor.setPosition(change.mPosition);
        cursor.setPosition(change.mPosition + change.mLength, QTextCursor::KeepAnchor);
        switch (change.mKind) {
        case FormatKind::Set:
            cursor.setCharFormat(change.mFormat);
            break;
        case FormatKind::Merge:
            cursor.mergeCharFormat(change.mFormat);
            break;
        case FormatKind::SetOfBlock:
            cursor.setBlockCharFormat(change.mFormat);
            break;
        }
    }
    // clang 14 can't compile the view that the linter asks for.
    // NOLINTNEXTLINE(modernize-loop-convert)
    for (auto change = mTexts.rbegin(); change != mTexts.rend(); ++change) {
        cursor.setPosition(change->mPosition);
        cursor.setPosition(change->mPosition + change->mRemoved, QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
        if (!change->mText.isEmpty())
            cursor.insertText(change->mText, change->mFormat);
    }
    cursor.endEditBlock();
}
