#pragma once

#include "TVL.h"
#include "TvlExport.h"

#include <QString>

#include <memory>

class QTextDocument;

/**
 * What becomes of a file when it is imported, by its suffix: which item, whether its words become a
 * text of the project, and what reads them. Suffixes are without a dot, in capitals or not.
 */
class TVL_EXPORT TVLFileKinds
{
public:
    /** Reads a file. Null, with what is wrong in the error, if it can't be read. */
    using Reader = std::unique_ptr<QTextDocument> (*)(const QString &path, QString *error);

    /** The item of a file that is kept as it is; TVL::Text for one whose words are read. */
    [[nodiscard]] static TVL::NodeType suffixToNodeType(const QString &suffix);

    /** What reads a file without a converter; null for what needs one or has no words. */
    [[nodiscard]] static Reader textReader(const QString &suffix);

    /** Whether a file holds a tree of items rather than one. */
    [[nodiscard]] static bool isOutline(const QString &suffix);

    /**
     * Whether a file's words are to become a text, as far as they can be had. In the Draft all do;
     * elsewhere pictures, sound, film and pages stay what they are, and web pages do unless the
     * user wants their words.
     */
    [[nodiscard]] static bool becomesText(const QString &suffix, bool isInDraft, bool isHtmlText);
};
