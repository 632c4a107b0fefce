#pragma once

#include "TvlExport.h"

#include <QObject>

/** Vocabulary of import and export. */
namespace TVLImportExport {

Q_NAMESPACE_EXPORT(TVL_EXPORT)

/** What reads or writes a format. The numbers never change. */
enum Engine : int {
    NoEngine = 0, ///< Nothing does.
    LibraryEngine = 1, ///< This library.
    OfficeEngine = 2, ///< LibreOffice, by the document converter; links to items are kept.
    MarkupEngine = 3, ///< pandoc, by the document converter.
    MultiMarkdownEngine = 4, ///< The MultiMarkdown converter.
    PlainOfficeEngine = 5, ///< As OfficeEngine, for texts whose links are dropped before.
    QtEngine = 6, ///< The writers that Qt has.
    RtfEngine = 7, ///< A file that bears another suffix has rich text in it.
};
Q_ENUM_NS(Engine)

} // namespace TVLImportExport
