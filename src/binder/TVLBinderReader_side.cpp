#include "TVLBinderReader.h"

#include "TVLBinderTags_p.h"
#include "TVLBinderText.h"
#include "TVLBinderWords_p.h"

#include <algorithm>

using namespace TVLBinderTags;
namespace Attribute = TVLBinderAttributes;
namespace Words = TVLBinderWords;

namespace {

constexpr char16_t LastByte = 0xff;

/**
 * The bytes that RTF in XML stands for, one per character. Where another program wrote characters
 * that are no bytes, RTF's own form of them keeps the text.
 */
QByteArray rtfBytes(const QString &text)
{
    const auto isByte = [](QChar ch) { return ch.unicode() <= LastByte; };
    if (std::all_of(text.cbegin(), text.cend(), isByte))
        return text.toLatin1();
    QByteArray bytes;
    bytes.reserve(text.size());
    for (const QChar ch : text) {
        if (isByte(ch))
            bytes.append(char(ch.unicode()));
        else
            bytes.append("\\u" + QByteArray::number(qint16(ch.unicode())) + '?');
    }
    return bytes;
}

} // namespace

bool TVLBinderReader::expectFirstElement(const QString &tag, int sourceLine)
{
    if (tokenType() == NoToken)
        readNextStartElement();
    return expectElement(tag, sourceLine);
}

QByteArray TVLBinderReader::readRtf()
{
    return rtfBytes(readText());
}

bool TVLBinderReader::readComments(QList<TVLTextCommentLink> *comments)
{
    if (!expectFirstElement(Comments, __LINE__))
        return false;
    readCommentList(&TVLBinderReader::readComment, comments);
    return !hasError();
}

void TVLBinderReader::readCommentList(TVLTextCommentLink (TVLBinderReader::*readOne)(),
                                      QList<TVLTextCommentLink> *comments)
{
    while (readNextStartElement()) {
        if (name() != TVLBinderTags::Comment) {
            skipCurrentElement();
            continue;
        }
        const TVLTextCommentLink comment = (this->*readOne)();
        if (!hasError())
            comments->append(comment);
    }
}

TVLTextCommentLink TVLBinderReader::readComment()
{
    const QXmlStreamAttributes attributes = this->attributes();
    TVLTextCommentLink comment;
    comment.mIdentity = attributes.value(Attribute::ID).toString();
    comment.mIsFootnote = attributes.value(Attribute::Footnote) == Words::Yes;
    comment.mIsCollapsed = attributes.value(Attribute::Collapsed) == Words::Yes;
    comment.mColor = TVL::floatStringToColor(attributes.value(Attribute::Color));
    comment.mNumber = std::max(attributes.value(Attribute::Number).toInt(), 0);
    comment.mRtf = readRtf();
    return comment;
}

bool TVLBinderReader::readLinks(TVLTextInternalLinkMap *textLinks,
                                TVLTextInternalLinkMap *noteLinks,
                                QList<TVLTextCommentLink> *comments)
{
    if (!expectFirstElement(Links, __LINE__))
        return false;
    while (readNextStartElement()) {
        if (name() == CommentsAndFootnotes) {
            readCommentList(&TVLBinderReader::readLinksComment, comments);
        } else if (name() == TavelinorLinks) {
            while (readNextStartElement()) {
                if (name() == TextLinks)
                    readLinksTextNote(textLinks);
                else if (name() == NotesLinks)
                    readLinksTextNote(noteLinks);
                else
                    skipCurrentElement();
            }
        } else {
            skipCurrentElement();
        }
    }
    return !hasError();
}

void TVLBinderReader::readLinksTextNote(TVLTextInternalLinkMap *links)
{
    while (readNextStartElement()) {
        if (name() != LinkID) {
            skipCurrentElement();
            continue;
        }
        QPair<int, int> range(-1, -1);
        parseSelection(attributes().value(Attribute::Range), &range);
        int target = -1;
        readNumber(&target);
        if (range.first >= 0 && range.second >= 0 && target >= 0)
            links->mTargets.insert({range.first, range.second}, target);
    }
}

TVLTextCommentLink TVLBinderReader::readLinksComment()
{
    const QXmlStreamAttributes attributes = this->attributes();
    TVLTextCommentLink comment;
    comment.mIdentity = attributes.value(Attribute::ID).toString();
    comment.mIsFootnote = attributes.value(Attribute::IsFootnote) == Words::Yes;
    comment.mIsCollapsed = attributes.value(Attribute::Collapsed) == Words::Yes;
    comment.mNumber = std::max(attributes.value(Attribute::FootnoteNumber).toInt(), 0);
    while (readNextStartElement()) {
        if (name() == Color)
            comment.mColor = TVL::floatStringToColor(readText());
        else if (name() == RTF)
            comment.mRtf = readRtf();
        else
            skipCurrentElement(); // Among others its range: the text itself names its comments.
    }
    return comment;
}

bool TVLBinderReader::readSnapshots(QList<TVLSnapshotInfo> *snapshots)
{
    if (!expectFirstElement(Snapshots, __LINE__))
        return false;
    mVersionText = attributes().value(Attribute::Version).toString();
    while (readNextStartElement()) {
        if (name() != Snapshot) {
            skipCurrentElement();
            continue;
        }
        TVLSnapshotInfo snapshot;
        if (!readSnapshot(&snapshot))
            return false;
        snapshots->append(snapshot);
    }
    return !hasError();
}

bool TVLBinderReader::readSnapshot(TVLSnapshotInfo *snapshot)
{
    // A snapshot is of the main text alone.
    TVLTextInternalLinkMap noteLinks;
    while (readNextStartElement()) {
        if (name() == Title) {
            snapshot->mTitle = readText();
        } else if (name() == Date) {
            snapshot->mDate = tvlStringToDateTime(readText(), false);
        } else if (name() == Comments) {
            if (!readComments(&snapshot->mComments))
                return false;
        } else if (name() == Links) {
            if (!readLinks(&snapshot->mLinks, &noteLinks, &snapshot->mComments))
                return false;
        } else {
            skipCurrentElement();
        }
    }
    return !hasError();
}

bool TVLBinderReader::readProjectNotes(QList<QPair<int, TVLTextInternalLinkMap>> *notes)
{
    if (!expectFirstElement(ProjectNotes, __LINE__))
        return false;
    mVersionText = attributes().value(Attribute::Version).toString();
    while (readNextStartElement()) {
        if (name() != Note) {
            skipCurrentElement();
            continue;
        }
        QPair<int, TVLTextInternalLinkMap> note;
        if (!readProjectNote(&note))
            return false;
        if (note.first >= 0)
            notes->append(note);
    }
    return !hasError();
}

bool TVLBinderReader::readProjectNote(QPair<int, TVLTextInternalLinkMap> *note)
{
    bool ok = false;
    const int id = attributes().value(Attribute::ID).toInt(&ok);
    note->first = ok ? id : -1; // There is no file to a note without an id.
    TVLTextInternalLinkMap noteLinks;
    QList<TVLTextCommentLink> comments;
    while (readNextStartElement()) {
        if (name() != Links)
            skipCurrentElement(); // Among others its title, which the note's own file has as well.
        else if (!readLinks(&note->second, &noteLinks, &comments))
            return false;
    }
    return !hasError();
}
