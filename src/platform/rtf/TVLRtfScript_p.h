#pragma once

#include <QByteArray>
#include <QStringView>
#include <QTextBlockFormat>

// What a paragraph is in a script, which RTF has no words for, in a group that other programs pass
// over.

/** The group for a paragraph; empty for one that isn't of a script. */
[[nodiscard]] QByteArray tvlRtfScriptGroup(const QTextBlockFormat &format);

/** Sets what the text of such a group says. */
void tvlSetRtfScript(QStringView text, QTextBlockFormat *format);
