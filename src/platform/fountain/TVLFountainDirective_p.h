#pragma once

#include "TVLScreenplay_p.h"

#include <optional>

/**
 * What Fountain has no sign for: words behind a colon, between the signs of the boneyard, which
 * other programs pass over. Before a paragraph they say what it is; before a note, what the note
 * is.
 */
struct TVLFountainDirective
{
    bool mIsOfParagraph = false;
    TVLScreenplayParagraph mParagraph; ///< Without text.

    bool mIsOfNote = false;
    bool mIsFootnote = false;
    int mHangsOn = -1; ///< How much of the text before the note it hangs on; -1 if it is in line.

    /** Reads what stands between the signs of the boneyard. */
    [[nodiscard]] static std::optional<TVLFountainDirective> read(QStringView content);
    /** With the signs; what the paragraph is besides its text. */
    [[nodiscard]] static QString ofParagraph(const TVLScreenplayParagraph &paragraph);
    /** With the signs. */
    [[nodiscard]] static QString ofComment(const TVLScreenplayComment &comment);
    /** With the signs. */
    [[nodiscard]] static QString ofFootnote();
};
