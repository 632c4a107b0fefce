#include "TVLTextRtfReader.h"

#include "TVLRtfCheck_p.h"
#include "TVLRtfParser_p.h"

#include <QIODevice>
#include <QTextDocument>

TVLTextRtfReader::TVLTextRtfReader(QTextDocument *document)
    : mDocument(document)
{
}

TVLTextRtfReader::~TVLTextRtfReader() = default;

bool TVLTextRtfReader::read(QIODevice *device)
{
    const QByteArray rtf = device->readAll();
    if (device->isSequential() || device->atEnd())
        return read(rtf);
    mErrorString = device->errorString();
    return false;
}

bool TVLTextRtfReader::read(const QByteArray &rtf)
{
    const bool undoEnabled = mDocument->isUndoRedoEnabled();
    mDocument->setUndoRedoEnabled(false);
    QString title;
    {
        TVLRtfParser parser(TVLRtfCheck::beginOf(rtf), mDocument);
        mErrorString = parser.parse();
        title = parser.title();
    }
    if (!title.isEmpty())
        mDocument->setMetaInformation(QTextDocument::DocumentTitle, title);
    mDocument->setUndoRedoEnabled(undoEnabled);
    return mErrorString.isEmpty();
}
