#pragma once

#include "TvlExport.h"

class QTextDocument;

/**
 * Inline annotations and footnotes as marks in the text itself, which is how files carry them.
 *
 * A run with TVLTextFormat::InlineAnnotation becomes `{annotation|` run `|annotation}`, one with
 * TVLTextFormat::InlineFootnote `{footnote|` run `|footnote}`; a run that is both is an annotation
 * inside a footnote. Marks never reach over the end of a paragraph: what goes on there is marked
 * anew. Where the text itself holds such a mark, a backslash behind its brace or bar,
 * `{\annotation|` or `|\annotation}`, tells it from a real one; each further backslash there gets
 * one more. That goes for what only looks like a mark by the bar of a real one, too. So any
 * document that toMarkup() was applied to comes back by fromMarkup(). The formats of the ends of
 * paragraphs stay formats.
 */
namespace TVLInlineMarkup {

/** Turns the two formats into marks. */
TVL_EXPORT void toMarkup(QTextDocument *document);

/**
 * Turns marks into formats. A mark whose partner is missing in its paragraph stays as text, so
 * nothing is lost of a damaged text.
 */
TVL_EXPORT void fromMarkup(QTextDocument *document);

} // namespace TVLInlineMarkup
