#include "TVLProjectNodeProperties.h"

#include "TVLDoors.h"

#include <algorithm>

void TVLProjectNodeProperties::updateModified()
{
    mModified = tvlNow();
}

void TVLProjectNodeProperties::removeId(int id)
{
    if (id == mId)
        return;
    mSelectedSubdocumentIds.remove(id);
    mFreeformPositions.remove(id);
}

void TVLProjectNodeProperties::mergeNodeType(TVL::NodeType incoming)
{
    if (incoming == mNodeType)
        return;
    // A merge never turns an item into one of the three root folders.
    mNodeType = std::max(incoming, TVL::Folder);
}

void TVLProjectNodeProperties::applyMobileProperties(const TVLProjectNodeProperties &other)
{
    if (&other == this)
        return;
    mergeNodeType(other.mNodeType);
    mTargetType = other.mTargetType;
    mTitle = other.mTitle;
    mCreated = other.mCreated;
    mModified = other.mModified;
    mLabelId = other.mLabelId;
    mStatusId = other.mStatusId;
    mFileExtension = other.mFileExtension;
    mTextMode = other.mTextMode;
    mIsAlias = other.mIsAlias;
    mOriginalUrl = other.mOriginalUrl;
    // A mobile side that knows no icons must not clear the desktop's.
    if (!other.mIconFileName.isEmpty())
        mIconFileName = other.mIconFileName;
    mIndexCardImageFileExtension = other.mIndexCardImageFileExtension;
    mShowSynopsisImage = other.mShowSynopsisImage;
}

void TVLProjectNodeProperties::applyDesktopProperties(const TVLProjectNodeProperties &other)
{
    if (&other == this)
        return;
    mergeNodeType(other.mNodeType);
    mTargetType = other.mTargetType;
    mTitle = other.mTitle;
    mFileExtension = other.mFileExtension;
    mDefaultChildTemplateId = other.mDefaultChildTemplateId;
    mIndexCardImageFileExtension = other.mIndexCardImageFileExtension;
    mIconFileName = other.mIconFileName;
    mPreferredExternalApplication = other.mPreferredExternalApplication;
    mCustomMetaData = other.mCustomMetaData;
    mTextMode = other.mTextMode;
    mTypingAttributes = other.mTypingAttributes;
    mOriginalUrl = other.mOriginalUrl;
    mTarget = other.mTarget;
    mCurrentPdfPage = other.mCurrentPdfPage;
    mImageScaleFactor = other.mImageScaleFactor;
    mImageRotation = other.mImageRotation;
    mImageScalesProportionally = other.mImageScalesProportionally;
    mIncludeInCompile = other.mIncludeInCompile;
    mPageBreakBefore = other.mPageBreakBefore;
    mCompileAsIs = other.mCompileAsIs;
    mShowSynopsisImage = other.mShowSynopsisImage;
    mIgnoresTitlePrefixAndSuffix = other.mIgnoresTitlePrefixAndSuffix;
    mTargetNotify = other.mTargetNotify;
    mHasText = other.mHasText;
    mHasSynopsis = other.mHasSynopsis;
    mHasDocumentNote = other.mHasDocumentNote;
    mModified = other.mModified;
    mHasSnapshots = false;
    mSessionWordCount = 0;
    mSessionCharacterCount = 0;
}

void TVLProjectNodeProperties::applyAllPreserveIDs(const TVLProjectNodeProperties &other)
{
    const int id = mId;
    const QUuid uuid = mUuid;
    *this = other;
    mId = id;
    mUuid = uuid;
}
