#pragma once

#include <QByteArray>
#include <QModelIndex>
#include <QString>

class TVLProjectModel;

/**
 * What lies in an item, as titles that a view shows with commas between them, each followed by what
 * it has of main text, synopsis and notes in braces, with bars between them, and by what lies in it
 * in parentheses.
 */
[[nodiscard]] QString itemsText(const TVLProjectModel *model, const QModelIndex &parent);

/** An OPML file of a body's content. */
[[nodiscard]] QByteArray opml(const QByteArray &body, const QByteArray &head = {});

/** Writes a file and returns its path; it goes with the process. */
[[nodiscard]] QString outlineFile(const QByteArray &content);
