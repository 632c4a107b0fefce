#pragma once

#include "TVL.h"
#include "TVLFreeformPositionInfo.h"
#include "TVLReference.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QMap>
#include <QPair>
#include <QSet>
#include <QString>
#include <QUuid>

/**
 * Everything that is persisted or cached about one binder item, as a plain value.
 *
 * A node of the tree is such a record with links; the record also travels alone as a snapshot of
 * an item. Copies are cheap: the containers are implicitly shared.
 */
class TVL_EXPORT TVLProjectNodeProperties
{
public:
    int mId = -1; ///< Unique in the project; -1 for an item that has a uuid alone.
    QUuid mUuid; ///< The item's lasting identity.
    QString mTitle;
    TVL::NodeType mNodeType = TVL::Text;
    int mTargetType = TVL::WordsTarget; ///< What mTarget counts, a TVL::TargetType.
    int mLabelId = -1; ///< -1 for none.
    int mStatusId = -1; ///< -1 for none.
    int mDefaultChildTemplateId = -1; ///< Item that new children are made from; -1 for none.
    QString mFileExtension; ///< Extension of the main file when it isn't RTF text.
    QString mIndexCardImageFileExtension;
    QString mIconFileName; ///< Custom icon; empty for the icon of the type.
    QString mPreferredExternalApplication;
    QMap<QString, QString> mCustomMetaData; ///< Field id to value.
    QPair<int, int> mTextSelection{0, 0}; ///< Location and length.
    QPair<int, int> mNotesTextSelection{0, 0}; ///< Location and length.
    QDateTime mCreated;
    QDateTime mModified;
    QDateTime mRestoredSnapshotDate; ///< In memory only.
    QList<int> mKeywords;
    QList<TVLReference> mReferences;
    QString mTextMode; ///< Empty for the general mode.
    QByteArray mTypingAttributes; ///< RTF fragment with the formats that typing starts with.
    QString mOriginalUrl; ///< Where an imported item came from.
    int mTarget = 0; ///< A count of mTargetType.
    int mCurrentPdfPage = 1;
    double mImageScaleFactor = 1.0;
    int mImageRotation = 0; ///< Quarter turns clockwise, 0 to 3.
    bool mImageScalesProportionally = true;
    bool mIncludeInCompile = true;
    bool mPageBreakBefore = false;
    bool mCompileAsIs = false;
    bool mIsTemplateFolder = false;
    bool mShowSynopsisImage = false; ///< The index card shows the image instead of the synopsis.
    bool mIgnoresTitlePrefixAndSuffix = false;
    bool mTargetNotify = false;
    bool mTargetAllowOver = false;
    int mTargetBuffer = 0; ///< In units of mTargetType.
    bool mIsFavorite = false;
    bool mIsAlias = false; ///< Carried for media items; nothing here acts on it.
    bool mHasText = false; ///< Cached: the main text isn't empty.
    bool mHasSynopsis = false; ///< Cached: the synopsis isn't empty.
    bool mHasDocumentNote = false; ///< Cached: the notes aren't empty.
    bool mHasSnapshots = false;
    int mWordCount = -1; ///< Cached; -1 for not yet counted.
    int mCharacterCount = -1; ///< Cached; -1 for not yet counted.
    int mSessionWordCount = -1; ///< At the start of the session; -1 for not yet taken.
    int mSessionCharacterCount = -1; ///< At the start of the session; -1 for not yet taken.
    QSet<int> mSelectedSubdocumentIds; ///< Children selected on the item's corkboard.
    bool mFreeformMode = false;
    QHash<int, TVLFreeformPositionInfo> mFreeformPositions; ///< By child id.

    /** Whether the record names an item: an id of 0 or more, and a uuid. */
    [[nodiscard]] bool isValid() const { return mId >= 0 && !mUuid.isNull(); }

    /** Whether the item has a main text of its own: an ordinary folder or a text. */
    [[nodiscard]] bool canHaveText() const
    {
        return mNodeType == TVL::Folder || mNodeType == TVL::Text;
    }

    /** Sets the modification time to now. */
    void updateModified();

    /**
     * Forgets a child on the item's corkboard: its selection and its freeform position. Does
     * nothing for the record's own id.
     */
    void removeId(int id);

    /** Takes over what a mobile binder can say of an item. */
    void applyMobileProperties(const TVLProjectNodeProperties &other);

    /**
     * Takes over what one desktop item can give another. Label and status are deliberately not
     * among it; identity, creation time, keywords and references aren't either.
     */
    void applyDesktopProperties(const TVLProjectNodeProperties &other);

    /** Takes over everything but the identity. */
    void applyAllPreserveIDs(const TVLProjectNodeProperties &other);

    friend bool operator==(const TVLProjectNodeProperties &,
                           const TVLProjectNodeProperties &) = default;

private:
    void mergeNodeType(TVL::NodeType incoming);
};
