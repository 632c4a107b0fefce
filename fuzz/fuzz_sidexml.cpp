#include "FuzzSupport.h"

#include "TVLBinderReader.h"
#include "TVLBinderWriter.h"

#include <QBuffer>

#include <functional>

namespace {

using Comments = QList<TVLTextCommentLink>;
using Snapshots = QList<TVLSnapshotInfo>;
using Notes = QList<QPair<int, TVLTextInternalLinkMap>>;

QByteArray written(const std::function<void(TVLBinderWriter *)> &write)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TVLBinderWriter writer(&buffer);
    write(&writer);
    return buffer.data();
}

/** RTF stands in CDATA, in which XML has only one line end; to RTF they are all the same. */
void settle(Comments *comments)
{
    for (TVLTextCommentLink &comment : *comments)
        comment.mRtf.replace("\r\n", "\n").replace('\r', '\n');
}

void settle(Snapshots *snapshots)
{
    for (TVLSnapshotInfo &snapshot : *snapshots)
        settle(&snapshot.mComments);
}

/** Notes have nothing that needs it. */
void settle(Notes *) { }

/** What reads a kind of file. */
template <typename Content>
using Read = bool (TVLBinderReader::*)(Content *);

template <typename Content>
bool readFile(const QByteArray &file, Read<Content> read, Content *content)
{
    TVLBinderReader reader;
    reader.addData(file);
    return (reader.*read)(content);
}

QByteArray write(const Comments &comments)
{
    return written([&](TVLBinderWriter *writer) {
        writer->writeStartDocument();
        writer->writeComments(comments, true);
        writer->writeEndDocument();
    });
}

QByteArray write(const Snapshots &snapshots)
{
    return written([&](TVLBinderWriter *writer) { writer->writeSnapshots(snapshots); });
}

QByteArray write(const Notes &notes)
{
    QList<QPair<int, QTextDocument *>> documents;
    for (const auto &[id, links] : notes)
        documents.append({id, nullptr});
    return written([&](TVLBinderWriter *writer) { writer->writeProjectNotes(documents); });
}

/** What was read, once written, reads back and is written the same. */
template <typename Content>
void checkRoundTrip(const QByteArray &input, Read<Content> read)
{
    Content content;
    if (!readFile(input, read, &content) || content.isEmpty())
        return;
    settle(&content);
    const QByteArray file = write(content);
    Content again;
    if (!readFile(file, read, &again))
        tvlReportDifference("a file that was written can't be read", file, input);
    const QByteArray fileAgain = write(again);
    if (fileAgain != file)
        tvlReportDifference("a file that was read is written differently", file, fileAgain);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    tvlInitFuzzing();
    return 0;
}

/** The input is one of the small XML files beside the binder; its first element says which. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    checkRoundTrip<Comments>(input, &TVLBinderReader::readComments);
    checkRoundTrip<Snapshots>(input, &TVLBinderReader::readSnapshots);
    checkRoundTrip<Notes>(input, &TVLBinderReader::readProjectNotes);

    TVLTextInternalLinkMap textLinks;
    TVLTextInternalLinkMap noteLinks;
    Comments comments;
    TVLBinderReader reader;
    reader.addData(input);
    (void)reader.readLinks(&textLinks, &noteLinks, &comments);
    return 0;
}
