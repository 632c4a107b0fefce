#pragma once

#include <QString>
#include <QTextCursor>
#include <QTextDocument>

#include <memory>

class QRandomGenerator;

/** Which of a document's features a random one shall have. */
struct RandomDocumentOptions
{
    int mMaximumBlocks = 12;
    bool mTables = true;
    bool mNestedTables = true;
    bool mMergedCells = true;
    bool mLists = true;
    bool mPictures = true;
    bool mBrokenPictures = true; ///< Whether some of the pictures have bytes that nobody can show.
    bool mMarks = true; ///< Links, comments and the like.
    bool mInlineNotes = true;
};

/** A document with random text in random formats; the same for the same generator's state. */
std::unique_ptr<QTextDocument> makeRandomDocument(QRandomGenerator *random,
                                                  const RandomDocumentOptions &options = {});

/** Random text without line ends: mostly Latin, with characters of every plane of Unicode. */
QString makeRandomText(QRandomGenerator *random, int maximumLength);
