#include "TVLInlineMarkup.h"

#include "TVLNoteMarks_p.h"
#include "TVLTextEdits_p.h"

#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>
#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

// The marks are found by one scan over the text. Braces and bars are all that can start one:
//
//     opening   {word|        closing   |word}
//
// with any number of backslashes before the word. Two of them may share a bar, as an opening one
// and a closing one do in `{footnote|footnote}`. Writing puts one backslash into each that isn't
// a real mark, the shared ones included; so in what was written those without a backslash are
// real, and each other one has one backslash too many.

constexpr TVLNoteKinds Kinds = {{
    {TVLTextFormat::InlineFootnote, u"{footnote|", u"|footnote}"},
    {TVLTextFormat::InlineAnnotation, u"{annotation|", u"|annotation}"},
}};

QStringView wordOf(const TVLNoteKind &kind)
{
    return kind.mOpening.sliced(1, kind.mOpening.size() - 2);
}

struct Token
{
    qsizetype mStart; ///< Of the brace or bar in front.
    qsizetype mEnd;
    size_t mKind; ///< Place in Kinds.
    bool mIsOpening;
    bool mIsEscaped; ///< At least one backslash stands behind the first character.
};

std::optional<Token> tokenAt(QStringView text, qsizetype start)
{
    const bool isOpening = text[start] == u'{';
    if (!isOpening && text[start] != u'|')
        return {};
    qsizetype wordStart = start + 1;
    while (wordStart < text.size() && text[wordStart] == u'\\')
        ++wordStart;
    const QStringView rest = text.sliced(wordStart);
    for (size_t kind = 0; kind < Kinds.size(); ++kind) {
        const QStringView word = wordOf(Kinds[kind]);
        if (rest.startsWith(word) && rest.size() > word.size()
            && rest[word.size()] == (isOpening ? u'|' : u'}'))
            return Token{start, wordStart + word.size() + 1, kind, isOpening,
                         wordStart > start + 1};
    }
    return {};
}

std::vector<Token> tokens(QStringView text)
{
    std::vector<Token> found;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (const auto token = tokenAt(text, i))
            found.push_back(*token);
    }
    return found;
}

// --- Writing

QString textWithMarks(const QString &text, const std::vector<TVLNoteMark> &marks)
{
    if (marks.empty())
        return text;
    QString marked;
    int done = 0;
    for (const TVLNoteMark &mark : marks) {
        marked += QStringView(text).sliced(done, mark.mOffset - done);
        marked += mark.mText;
        done = mark.mOffset;
    }
    marked += QStringView(text).sliced(done);
    return marked;
}

/** Puts the marks of a paragraph's notes and the backslashes that the text then needs in. */
void writeParagraph(const QTextBlock &block, TVLTextEdits *edits)
{
    const std::vector<TVLNoteMark> marks = tvlTakeNoteMarks(block, Kinds, edits);
    const std::vector<Token> found = tokens(textWithMarks(block.text(), marks));
    auto token = found.begin();
    auto fragment = block.begin();
    int added = 0;
    const auto insertBackslash = [&](const Token &escaped) {
        // What follows a brace or bar that needs one is always text, be the bar a mark's.
        const int position = block.position() + int(escaped.mStart) + 1 - added;
        while (!fragment.fragment().contains(position))
            ++fragment;
        edits->insertText(position, u"\\"_s,
                          tvlWithoutNotes(fragment.fragment().charFormat(), Kinds));
    };
    for (const TVLNoteMark &mark : marks) {
        const qsizetype start = mark.mOffset + added;
        for (; token->mStart < start; ++token)
            insertBackslash(*token);
        // The mark itself.
        ++token;
        edits->insertText(block.position() + mark.mOffset, mark.mText.toString(), mark.mFormat);
        added += int(mark.mText.size());
    }
    for (; token != found.end(); ++token)
        insertBackslash(*token);
}

bool mayHaveTokens(QStringView text)
{
    return std::any_of(text.begin(), text.end(),
                       [](QChar character) { return character == u'{' || character == u'|'; });
}

// --- Reading

/** Takes the marks with a partner and the backslashes of the others out of a paragraph. */
void readParagraph(const QTextBlock &block, TVLTextEdits *edits)
{
    std::vector<Token> found = tokens(block.text());
    std::vector<bool> isTaken(found.size());
    std::array<std::optional<size_t>, Kinds.size()> open;
    qsizetype markEnd = 0;
    for (size_t i = 0; i < found.size(); ++i) {
        const Token &token = found[i];
        // Of two marks with one bar the first one has it.
        if (token.mIsEscaped || token.mStart < markEnd)
            continue;
        markEnd = token.mEnd;
        auto &opening = open[token.mKind];
        if (token.mIsOpening) {
            opening = i;
        } else if (opening) {
            isTaken[i] = isTaken[*opening] = true;
            QTextCharFormat format;
            format.setProperty(Kinds[token.mKind].mProperty, true);
            const Token &start = found[*opening];
            edits->mergeCharFormat(block.position() + int(start.mEnd),
                                   int(token.mStart - start.mEnd), format);
            opening.reset();
        }
    }
    for (size_t i = 0; i < found.size(); ++i) {
        const int start = block.position() + int(found[i].mStart);
        if (isTaken[i])
            edits->removeText(start, int(found[i].mEnd - found[i].mStart));
        else if (found[i].mIsEscaped)
            edits->removeText(start + 1, 1);
    }
}

} // namespace

void TVLInlineMarkup::toMarkup(QTextDocument *document)
{
    if (!document)
        return;
    TVLTextEdits edits;
    const bool withNotes = tvlMayHaveNotes(document);
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        if (withNotes || mayHaveTokens(block.text()))
            writeParagraph(block, &edits);
    }
    edits.apply(document);
}

void TVLInlineMarkup::fromMarkup(QTextDocument *document)
{
    if (!document)
        return;
    TVLTextEdits edits;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        if (mayHaveTokens(block.text()))
            readParagraph(block, &edits);
    }
    edits.apply(document);
}
