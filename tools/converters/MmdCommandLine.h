#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/** What the MultiMarkdown converter is asked for. */
struct MmdCommandLine
{
    QString source;
    QString target; ///< Beside the source.
    QString reader; ///< What pandoc is to read, with its extensions switched.
    QString writer; ///< What pandoc is to write.
    QString htmlHeader; ///< What goes into the head of a page as it stands.
    bool isFlatOdf = false;

    /** Nothing, with a line in @p error, if the words ask for nothing that can be done. */
    [[nodiscard]] static std::optional<MmdCommandLine> parse(const QStringList &words,
                                                             QString *error);
};
