#pragma once

#include "TVLScriptElement.h"
#include "TvlExport.h"

#include <QByteArray>
#include <QList>

class QIODevice;
class QTextDocument;

/**
 * Writes screenplays as files of Final Draft. TVLFinalDraftReader reads the same elements, text and
 * emphasis; control characters go, because XML doesn't have them.
 */
class TVL_EXPORT TVLFinalDraftWriter
{
public:
    /**
     * Composes the whole file, then writes it at once. With no elements those of a new screenplay
     * serve. False without a document, and when the device, which must be open, took less than all.
     */
    [[nodiscard]] static bool write(QIODevice *device, const QTextDocument *document,
                                    const QList<TVLScriptElement> &elements);
    /** The bytes that write() writes. */
    [[nodiscard]] static QByteArray toXml(const QTextDocument *document,
                                          const QList<TVLScriptElement> &elements);
};
