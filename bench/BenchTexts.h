#pragma once

#include <QTextBlockFormat>
#include <QTextCharFormat>

#include <memory>
#include <vector>

class QTextDocument;

/** A text of about @p rtfBytes in RTF: prose in paragraphs of five runs in changing formats. */
std::unique_ptr<QTextDocument> makeBenchText(int rtfBytes);

/** A document's paragraphs and runs, taken out of it so that they can be put into another. */
struct BenchParagraph
{
    struct Run
    {
        QString text;
        QTextCharFormat format;
    };

    QTextBlockFormat blockFormat;
    QTextCharFormat charFormat;
    std::vector<Run> runs;
};

std::vector<BenchParagraph> paragraphsOf(const QTextDocument &document);

/** Puts paragraphs into an empty document as one edit that can't be undone. */
void insertParagraphs(const std::vector<BenchParagraph> &paragraphs, QTextDocument *document);
