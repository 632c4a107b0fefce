#pragma once

#include "BenchItems.h"

#include "TVLProjectModel.h"

#include <QTemporaryDir>

using namespace Qt::StringLiterals;

/** A project on disk, gone with the object. */
class BenchProject
{
public:
    /** Writes a binder with items, and no texts. */
    BenchProject(int items, BenchShape shape);

    /** Gives each item a text of about so many bytes, and the project what it keeps of them between
     * sessions for searches. */
    void addTexts(int bytes) const;

    [[nodiscard]] QString path() const { return mDirectory.filePath(u"Novel.tavel"_s); }
    [[nodiscard]] QString binderPath() const;
    [[nodiscard]] std::unique_ptr<TVLProjectModel> open() const;

private:
    QTemporaryDir mDirectory;
};
