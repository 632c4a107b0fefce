#pragma once

#include "TVLScreenplay_p.h"

class QRandomGenerator;

/** What a random screenplay may hold. */
enum class RandomTexts : quint8 {
    Likely, ///< Words, with a sign here and there.
    Nasty, ///< Mostly signs, blanks and line ends.
};

/** A screenplay with paragraphs of all kinds in any order. */
TVLScreenplay makeRandomScreenplay(QRandomGenerator *random, RandomTexts texts);

/** A text of signs, blanks, line ends and a few letters. */
QString makeRandomFountain(QRandomGenerator *random);

/** A screenplay of about so many pages in which everything stands where it belongs. */
TVLScreenplay makeFilm(QRandomGenerator *random, int pages);
