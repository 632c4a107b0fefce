#pragma once

#include "TvlExport.h"

#include <QTextCursor>

class QTextDocument;

/** Finds runs of text by the application's marks on them. */
class TVL_EXPORT TVLTextFinder
{
public:
    /**
     * A cursor that selects the run with the inspector comment or footnote that starts at
     * @p position, up to where another comment or none begins; a null cursor when none starts
     * there.
     */
    [[nodiscard]] static QTextCursor findCommentViaStartPos(QTextDocument *document, int position);
    /** A cursor that selects the run with the inspector comment or footnote that @p position lies
     * in; a null cursor when it lies in none. */
    [[nodiscard]] static QTextCursor findCommentAt(QTextDocument *document, int position);
};
