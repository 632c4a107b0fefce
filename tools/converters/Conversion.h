#pragma once

#include "Outcome.h"

#include "TVLFormat.h"
#include "TVLImportExport.h"

class TVLProgress;

/** What a document is to be converted from and to. */
struct ConversionTask
{
    QString source;
    QString target;
    QString title = {}; ///< For a target that must have one.
    TVLImportExport::Engine engine = TVLImportExport::NoEngine; ///< None: what the formats need.
};

/**
 * Converts a document: at once where one program knows both formats, else by way of rich text, DOCX
 * or both. The formats are those of the suffixes.
 *
 * @param workFolder for what is made on the way, which is left there
 */
[[nodiscard]] Outcome convertDocument(const ConversionTask &task, const QString &workFolder,
                                      TVLProgress *progress);
