#pragma once

#include <QString>
#include <QTextCharFormat>

#include <vector>

class QTextDocument;

/**
 * Changes of a document's text and character formats that are planned before any is made, so all
 * positions are those of the text as it stands.
 *
 * apply() makes them in one edit block: formats first, which move nothing, then the text from the
 * back, so that no change moves another one's place.
 */
class TVLTextEdits
{
public:
    /** Neither range may reach over the end of a paragraph. */
    void setCharFormat(int position, int length, const QTextCharFormat &format);
    void mergeCharFormat(int position, int length, const QTextCharFormat &format);
    /** The format of a paragraph's end, for the paragraph at a position. */
    void setBlockCharFormat(int position, const QTextCharFormat &format);

    /**
     * Changes of the text must come in the order of their places; equal places keep the order.
     * The format may be that of a picture, of which the text gets only what text can have.
     */
    void insertText(int position, const QString &text, const QTextCharFormat &format);
    void removeText(int position, int length);

    [[nodiscard]] bool isEmpty() const { return mFormats.empty() && mTexts.empty(); }
    void apply(QTextDocument *document) const;

private:
    enum class FormatKind : quint8 { Set, Merge, SetOfBlock };
    struct FormatChange
    {
        FormatKind mKind;
        int mPosition;
        int mLength;
        QTextCharFormat mFormat;
    };
    struct TextChange
    {
        int mPosition;
        int mRemoved;
        QString mText;
        QTextCharFormat mFormat;
    };

    std::vector<FormatChange> mFormats;
    std::vector<TextChange> mTexts;
};
