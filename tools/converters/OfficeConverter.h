#pragma once

#include "Outcome.h"

#include "TVLFormat.h"

class TVLProgress;

/**
 * Converts by LibreOffice. Each run has a profile of its own, so that it neither meets an office
 * that the user has open nor changes his settings; runs wait for each other, because each takes
 * much memory. Macros aren't run and links in documents aren't followed.
 */
class OfficeConverter
{
public:
    /** What is made on the way is left in the folder for its owner to remove. */
    OfficeConverter(QString workFolder, TVLProgress *progress);

    [[nodiscard]] static bool canRead(TVLFormat::Format format);
    [[nodiscard]] static bool canWrite(TVLFormat::Format format);

    [[nodiscard]] Outcome convert(const QString &source, TVLFormat::Format from,
                                  const QString &target, TVLFormat::Format to);

private:
    [[nodiscard]] Outcome run(const QString &source, const QString &filter, const QString &result);
    [[nodiscard]] bool writeProfile() const;

    QString mWorkFolder;
    TVLProgress *mProgress;
};
