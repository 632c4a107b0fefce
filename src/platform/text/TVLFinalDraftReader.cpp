#include "TVLFinalDraftReader.h"

#include "TVLCoreUtil.h"
#include "TVLFinalDraftParser_p.h"
#include "TVLScreenplayDocument_p.h"

#include <QCoreApplication>

bool TVLFinalDraftReader::load(const QString &path)
{
    mErrorString.clear();
    mBytes.clear();
    if (!TVLCoreUtil::IsReadable(path, &mErrorString))
        return false;
    bool isRead = false;
    mBytes = TVLCoreUtil::ReadBinaryFile(path, &isRead);
    if (!isRead)
        mErrorString = QCoreApplication::translate("TVLFinalDraftReader", "The file can't be read");
    return isRead;
}

bool TVLFinalDraftReader::read(QTextDocument *document, const QList<TVLScriptElement> &elements)
{
    mErrorString.clear();
    if (!document) {
        mErrorString = QCoreApplication::translate("TVLFinalDraftReader", "There is no document.");
        return false;
    }
    TVLFinalDraftParser parser(mBytes);
    const bool isWhole = parser.parse();
    if (!isWhole)
        mErrorString = parser.errorString();
    tvlSetScreenplay(parser.screenplay(), elements, document);
    return isWhole;
}
