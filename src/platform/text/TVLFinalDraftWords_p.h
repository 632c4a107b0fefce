#pragma once

#include "TVLScreenplay_p.h"

// The words of Final Draft's files that reading and writing share.

/** The word for what a paragraph is. */
[[nodiscard]] QString tvlFinalDraftType(const TVLScreenplayParagraph &paragraph);
/** Makes a paragraph what a word says; one that isn't known is kept. */
void tvlSetFinalDraftType(QStringView type, TVLScreenplayParagraph *paragraph);

/** The word for an alignment; 0 for none. */
[[nodiscard]] QStringView tvlFinalDraftAlignment(int alignment);
/** The alignment of a word; 0 for the one that paragraphs of a kind have anyway. */
[[nodiscard]] int tvlAlignmentOfFinalDraft(QStringView word, TVLScreenplayKind kind);

[[nodiscard]] QString tvlFinalDraftStyle(quint8 styles);
[[nodiscard]] quint8 tvlStylesOfFinalDraft(QStringView word);

/** Names of notes that are text apart from the rest, with the style of that text. */
[[nodiscard]] QStringView tvlFinalDraftNoteName(quint8 styles);
/** Plain for a name of other notes. */
[[nodiscard]] quint8 tvlStyleOfFinalDraftNote(QStringView name);

constexpr QStringView FinalDraftComment = u"Comment";
constexpr QStringView FinalDraftFootnote = u"Inspector Footnote";
