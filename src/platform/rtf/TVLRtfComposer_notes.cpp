#include "TVLRtfComposer_p.h"

#include "TVLTextFormat.h"
#include "TVLTextRtfReader.h"
#include "TVLTextRtfWriter.h"

#include <QTextDocument>

TVLRtfComposer::NoteTarget TVLRtfComposer::footnoteTarget() const
{
    switch (mOptions.mFootnoteDestination) {
    case TVLTextRtfWriter::FootnotesAtPageEnd:
        return NoteTarget::Footnote;
    case TVLTextRtfWriter::FootnotesAtDocumentEnd:
        return NoteTarget::Endnote;
    default:
        return NoteTarget::Dropped;
    }
}

TVLRtfComposer::NoteTarget TVLRtfComposer::annotationTarget() const
{
    switch (mOptions.mAnnotationDestination) {
    case TVLTextRtfWriter::AnnotationsAsComments:
        return NoteTarget::Comment;
    case TVLTextRtfWriter::AnnotationsAsFootnotes:
        return NoteTarget::Footnote;
    case TVLTextRtfWriter::AnnotationsInText:
        return NoteTarget::InText;
    default:
        return NoteTarget::Dropped;
    }
}

bool TVLRtfComposer::exportNote(const QTextFragment &fragment)
{
    const QTextCharFormat format = fragment.charFormat();
    const QString identity = TVLTextFormat::hasComment(format)
        ? format.stringProperty(TVLTextFormat::CommentIdentity)
        : QString();
    if (mInspectorNote.stringProperty(TVLTextFormat::CommentIdentity) != identity)
        finishInspectorNote();

    NoteTarget target = NoteTarget::None;
    if (format.boolProperty(TVLTextFormat::InlineFootnote))
        target = footnoteTarget();
    else if (format.boolProperty(TVLTextFormat::InlineAnnotation))
        target = annotationTarget();
    if (target != mOpenNote) {
        endNote();
        if (target != NoteTarget::None) {
            closeGroups();
            openNote(target);
        }
    }
    if (target == NoteTarget::None) {
        if (!identity.isEmpty())
            mInspectorNote = format;
        return false;
    }
    if (target != NoteTarget::Dropped)
        this->fragment(fragment);
    return true;
}

void TVLRtfComposer::openNote(NoteTarget target)
{
    mOpenNote = target;
    mWordsBeforeNote = mCharWords;
    switch (target) {
    case NoteTarget::Footnote:
    case NoteTarget::Endnote:
        mBody.append("{\\super\\chftn}{\\footnote");
        if (target == NoteTarget::Endnote)
            mBody.append("\\ftnalt");
        mBody.append("\\pard\\plain{\\super\\chftn}");
        if (mOptions.mFootnotesWithLeadingSpace)
            mBody.append(' ');
        mCharWords.clear();
        break;
    case NoteTarget::Comment:
        mBody.append("{\\*\\atnid A}{\\*\\atnauthor Author}\\chatn{\\*\\annotation\\pard\\plain"
                     "{\\chatn}");
        mCharWords.clear();
        break;
    case NoteTarget::InText:
        mBody.append('[');
        break;
    default:
        break;
    }
}

void TVLRtfComposer::endNote()
{
    switch (std::exchange(mOpenNote, NoteTarget::None)) {
    case NoteTarget::Footnote:
    case NoteTarget::Endnote:
    case NoteTarget::Comment:
        closeGroups();
        mBody.append('}');
        mCharWords = mWordsBeforeNote;
        break;
    case NoteTarget::InText:
        mBody.append(']');
        break;
    default:
        break;
    }
}

void TVLRtfComposer::finishInspectorNote()
{
    if (!TVLTextFormat::hasComment(mInspectorNote))
        return;
    const TVLTextCommentLink comment = TVLTextFormat::comment(mInspectorNote);
    mInspectorNote = {};
    const NoteTarget target = comment.mIsFootnote ? footnoteTarget() : annotationTarget();
    if (target == NoteTarget::Dropped)
        return;
    QTextDocument note;
    TVLTextRtfReader reader(&note);
    // A damaged comment gives what can be read of it.
    if (!comment.mRtf.isEmpty())
        static_cast<void>(reader.read(comment.mRtf));
    closeGroups();
    openNote(target);
    noteText(note);
    endNote();
}

void TVLRtfComposer::noteText(const QTextDocument &note)
{
    for (QTextBlock block = note.begin(); block.isValid(); block = block.next()) {
        if (block != note.begin())
            mBody.append(mOpenNote == NoteTarget::InText ? "\\line " : "\\par ");
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            // Pictures of another document have no bytes here.
            if (it.fragment().charFormat().isImageFormat())
                continue;
            const QTextCharFormat format = it.fragment().charFormat();
            const bool opensGroup = useWords(format, charWords(format));
            tvlAppendRtfText(&mBody, it.fragment().text());
            if (opensGroup)
                mBody.append('}');
        }
    }
}
