#include "TvlFountain.h"

#include "TVLErrorText_p.h"
#include "TVLFileWriting_p.h"
#include "TVLFountainParser_p.h"
#include "TVLFountainWriter_p.h"
#include "TVLScreenplayDocument_p.h"

#include <QCoreApplication>

namespace {

QString noDocument()
{
    return QCoreApplication::translate("TvlFountain", "There is no document.");
}

} // namespace

bool TvlFountain::writeFile(const QString &path, const QTextDocument *document,
                            const QList<TVLScriptElement> &elements, QString *error)
{
    if (!document)
        return tvlFail(error, noDocument());
    return tvlWriteOwnFile(toText(document, elements).toUtf8(), path, error);
}

QString TvlFountain::toText(const QTextDocument *document, const QList<TVLScriptElement> &elements)
{
    return TVLFountainWriter::write(tvlScreenplayOf(document, elements));
}

bool TvlFountain::parseText(const QString &text, QTextDocument *document,
                            const QList<TVLScriptElement> &elements, QString *error)
{
    if (!document)
        return tvlFail(error, noDocument());
    tvlSetScreenplay(TVLFountainParser::parse(text), elements, document);
    return true;
}
