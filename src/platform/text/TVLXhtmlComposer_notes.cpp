#include "TVLTextFormat.h"
#include "TVLTextRtf.h"
#include "TVLXhtmlComposer_p.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/** 1, 2, 3 … as a, b, … z, aa, ab … */
QString letters(qsizetype number)
{
    constexpr qsizetype Letters = 26;
    QString text;
    for (; number > 0; number = (number - 1) / Letters)
        text.prepend(QChar(u'a' + char16_t((number - 1) % Letters)));
    return text;
}

} // namespace

void TVLXhtmlComposer::endInlineFootnote()
{
    if (mFootnote.isEmpty())
        return;
    reference(&mFootnotes, {std::exchange(mFootnote, {}), {}});
}

void TVLXhtmlComposer::commentsThatEnd(const QTextCharFormat &format)
{
    const QString next =
        TVLTextFormat::hasComment(format) ? TVLTextFormat::comment(format).mIdentity : QString();
    if (mComment.mIdentity.isEmpty() || mComment.mIdentity == next)
        return;
    const TVLTextCommentLink comment = std::exchange(mComment, {});
    // One that hangs on several runs has its mark behind the first of them.
    if (mNotesTold.contains(comment.mIdentity))
        return;
    mNotesTold.insert(comment.mIdentity);
    closeLink();
    reference(comment.mIsFootnote ? &mFootnotes : &mComments, {{}, comment.mRtf});
}

void TVLXhtmlComposer::reference(Notes *notes, const Note &note)
{
    notes->notes.push_back(note);
    const auto number = qsizetype(notes->notes.size());
    const bool isComment = notes == &mComments;
    open(u"sup"_s);
    mWriter->writeAttribute(u"class"_s, notes->name);
    open(u"a"_s);
    mWriter->writeAttribute(u"id"_s, u"tvl-%1-mark-%2"_s.arg(notes->name).arg(number));
    mWriter->writeAttribute(u"href"_s, u"#tvl-%1-%2"_s.arg(notes->name).arg(number));
    if (mOptions.mIsBook)
        mWriter->writeAttribute(u"epub:type"_s, u"noteref"_s);
    mWriter->writeCharacters(isComment ? letters(number) : QString::number(number));
    close();
    close();
}

void TVLXhtmlComposer::noteList(const Notes &notes)
{
    if (notes.notes.empty())
        return;
    open(u"section"_s);
    mWriter->writeAttribute(u"class"_s, notes.name + u's');
    lineEnd();
    open(u"ol"_s);
    if (&notes == &mComments)
        mWriter->writeAttribute(u"type"_s, u"a"_s);
    lineEnd();
    int number = 0;
    for (const Note &note : notes.notes) {
        open(u"li"_s);
        mWriter->writeAttribute(u"id"_s, u"tvl-%1-%2"_s.arg(notes.name).arg(++number));
        if (mOptions.mIsBook) {
            open(u"aside"_s);
            mWriter->writeAttribute(u"epub:type"_s, u"footnote"_s);
        }
        noteText(note);
        if (mOptions.mIsBook)
            close();
        close();
        lineEnd();
    }
    close();
    lineEnd();
    close();
    lineEnd();
}

void TVLXhtmlComposer::noteText(const Note &note)
{
    for (const QTextFragment &fragment : note.runs)
        formattedText(fragment);
    if (note.rtf.isEmpty())
        return;
    QTextDocument document;
    QTextCursor(&document).insertFragment(TVLTextRtf::fromRtfCData(note.rtf));
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        open(u"p"_s);
        for (auto it = block.begin(); !it.atEnd(); ++it)
            formattedText(it.fragment());
        close();
    }
}
