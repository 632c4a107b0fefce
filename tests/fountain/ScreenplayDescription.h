#pragma once

#include "TVLScriptElement.h"

#include <QList>
#include <QString>

class QTextDocument;

/**
 * A script in words, a line for each paragraph: its element, what else is known of it, and its
 * text.
 *
 *   Character (dual): STEEL
 *   Scene Heading (number 1A, page): INT. HOUSE
 *   General (Section 2): Act two
 *   Dialogue: first line\nsecond <bi:line>
 *
 * `<letters:text>` is a run: b bold, i italic, u underlined, n note, f footnote, x taken out. `\n`
 * stands for a line end within a paragraph, `\t` for a tab, and a backslash for what follows it as
 * such. A comment stands in braces behind the run that it hangs on, a footnote of the inspector
 * with an asterisk before it.
 */
QString describeScreenplay(const QTextDocument &document);

/** The same of what a text reads as. */
QString describeFountain(const QString &fountain, const QList<TVLScriptElement> &elements = {});
