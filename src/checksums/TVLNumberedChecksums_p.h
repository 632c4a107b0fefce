#pragma once

#include "TVL.h"

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>

class TVLProjectChecksums;

/**
 * What TVLProjectChecksums::checksumsMatch() says of item after item, with one listing of the
 * folder of the documents in place of a look for each file.
 *
 * What comes and goes after the first question isn't known, so it is made for one pass.
 */
class TVLNumberedChecksums
{
public:
    explicit TVLNumberedChecksums(const TVLProjectChecksums *checksums);

    [[nodiscard]] bool checksumsMatch(int id, TVL::DocumentType type) const;
    [[nodiscard]] QByteArray loadedChecksum(int id, TVL::DocumentType type) const;

private:
    using Key = quint64; ///< An id and a type.

    /** Where a file's name leads, whatever case its letters have; nothing for one of no item. */
    [[nodiscard]] QSet<Key> listedKeys(bool *isListed) const;

    const TVLProjectChecksums *mChecksums; ///< Not owned.
    QString mDocsPath;
    QHash<Key, QByteArray> mRecords;
    bool mIsListed = false;
    QSet<Key> mListed;
};
