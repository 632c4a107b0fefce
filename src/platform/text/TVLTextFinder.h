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
     * @p position, as far as the same comment goes; a null cursor when none starts there.
     */
    [[nodiscard]] static QTextCursor findCommentViaStartPos(QTextDocument *document, int position);
    /** The same for a position anywhere in the run. */
    [[nodiscard]] static QTextCursor findCommentAt(QTextDocument *document, int position);
};
