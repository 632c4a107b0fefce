#pragma once

#include "TvlExport.h"

#include <QByteArray>
#include <QColor>
#include <QString>

/** An inspector comment or footnote that hangs on a run of a document's text. */
class TVL_EXPORT TVLTextCommentLink
{
public:
    TVLTextCommentLink();
    TVLTextCommentLink(const QString &identity, const QByteArray &rtf);

    QString mIdentity; ///< Names the comment in the text's character formats and in its file.
    bool mIsFootnote = false;
    bool mIsCollapsed = false; ///< Shown folded in the inspector.
    QColor mColor; ///< Invalid for the default colour.
    int mNumber = 0; ///< Number of a footnote; 0 for none.
    QByteArray mRtf; ///< The comment's own text.

    friend bool operator==(const TVLTextCommentLink &, const TVLTextCommentLink &) = default;
};
