#pragma once

#include <QString>

class QTextDocument;

/**
 * Where two documents differ in text, formats, lists, tables or pictures, in words; empty for
 * equal ones. A property with the value that holds without it counts as absent, and neighbouring
 * runs of equal formats as one.
 */
QString differenceOfDocuments(const QTextDocument &a, const QTextDocument &b);
