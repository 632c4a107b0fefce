#include "TVLBinderWriter.h"

#include "TVLBinderTags_p.h"
#include "TVLBinderWords_p.h"

#include <QTextDocument>

using namespace Qt::StringLiterals;

using namespace TVLBinderTags;
namespace Attribute = TVLBinderAttributes;
namespace Words = TVLBinderWords;

namespace {

const QString SideFileVersion = u"1.0"_s;

} // namespace

void TVLBinderWriter::writeComments(const QList<TVLTextCommentLink> &comments, bool standalone)
{
    if (comments.isEmpty())
        return;
    writeStartElement(Comments);
    if (standalone)
        writeAttribute(Attribute::Version, SideFileVersion);
    for (const TVLTextCommentLink &comment : comments)
        writeComment(comment);
    writeEndElement();
}

void TVLBinderWriter::writeComment(const TVLTextCommentLink &comment)
{
    writeStartElement(Comment);
    writeAttribute(Attribute::ID, comment.mIdentity);
    if (comment.mIsFootnote)
        writeAttribute(Attribute::Footnote, Words::yesOrNo(true));
    writeAttribute(Attribute::Collapsed, Words::yesOrNo(comment.mIsCollapsed));
    if (comment.mColor.isValid())
        writeAttribute(Attribute::Color, TVL::colorToFloatString(comment.mColor));
    if (comment.mNumber > 0)
        writeAttribute(Attribute::Number, QString::number(comment.mNumber));
    // RTF has an encoding of its own, so it is bytes: each stands for itself, one per character.
    writeCDATA(QString::fromLatin1(comment.mRtf));
    writeEndElement();
}

void TVLBinderWriter::writeSnapshots(const QList<TVLSnapshotInfo> &snapshots)
{
    writeStartIndex(Snapshots);
    for (const TVLSnapshotInfo &snapshot : snapshots) {
        writeStartElement(Snapshot);
        writeTextElement(Title, snapshot.mTitle);
        writeTextElement(Date, tvlDateTimeToString(snapshot.mDate, false));
        writeComments(snapshot.mComments, false);
        writeEndElement();
    }
    writeEndIndex();
}

void TVLBinderWriter::writeProjectNotes(const QList<QPair<int, QTextDocument *>> &notes)
{
    writeStartIndex(ProjectNotes);
    for (const auto &[id, document] : notes) {
        writeStartElement(Note);
        writeAttribute(Attribute::ID, QString::number(id));
        writeTextElement(
            Title, document ? document->metaInformation(QTextDocument::DocumentTitle) : QString());
        writeEndElement();
    }
    writeEndIndex();
}

void TVLBinderWriter::writeStartIndex(const QString &tag)
{
    writeStartDocument();
    writeStartElement(tag);
    writeAttribute(Attribute::Version, SideFileVersion);
}

void TVLBinderWriter::writeEndIndex()
{
    writeEndElement();
    writeEndDocument();
}
