#pragma once

#include <QString>

class QTextDocument;

/**
 * A document in lines that people can read and write: a line for its title, one for each paragraph
 * with what is special about it, below it one for each run of text, and tables with their cells.
 *
 * Distances are in points, rows and columns count from 1. A character that can't be seen stands
 * there by its number. What holds without being said isn't mentioned.
 */
QString describeDocument(const QTextDocument &document);
