#pragma once

#include "TvlExport.h"

#include <QString>

/** What the targets of the draft and of a session count; a document's own target has other numbers.
 */
enum class TVLCountType : int {
    Characters = 0,
    Words = 1,
    Pages = 2,
};

/** The writing target of the whole draft. */
struct TVLDraftTarget
{
    QString mDeadline; ///< As it stands in the binder.
    int mCount = 0;
    int mType = int(TVLCountType::Words); ///< A TVLCountType.
    bool mCountIncludedOnly = false;
    bool mCurrentCompileGroupOnly = false;
    bool mIgnoreDeadline = false;
    bool mShowOverrun = false;
    int mBuffer = 0;

    friend bool operator==(const TVLDraftTarget &, const TVLDraftTarget &) = default;
};

/** The writing target of a session. */
class TVL_EXPORT TVLSessionTarget
{
public:
    /** When the session's counts start anew. */
    enum ResetType : int {
        Midnight = 0,
        ProjectClose = 1,
        NextDay = 2,
        Never = 3,
    };

    QString mWritingDays; ///< As it stands in the binder.
    int mCount = 0;
    int mType = int(TVLCountType::Words); ///< A TVLCountType.
    bool mCountDraftOnly = false;
    bool mAllowNegatives = false;
    ResetType mResetType = Midnight;
    bool mFromDeadline = false; ///< The count follows from the draft's deadline.
    bool mCanWriteOnDeadlineDate = false;

    /** The binder's word for a reset type; that of Midnight for a value outside the enumeration. */
    [[nodiscard]] static QString toString(ResetType type);

    /** The reset type of a word; Midnight for an unknown one. */
    [[nodiscard]] static ResetType fromString(QStringView word);

    friend bool operator==(const TVLSessionTarget &, const TVLSessionTarget &) = default;
};
