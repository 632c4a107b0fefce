// What the model holds and gives out as it is.
#include "TVLProjectModel_p.h"

#include "TVLCollectionList_p.h"
const TVLProjectFolderFormat *TVLProjectModel::folderFormat() const
{
    return d->mFolderFormat;
}

bool TVLProjectModel::isOnlyRead() const
{
    return d->mIsOnlyRead;
}

bool TVLProjectModel::isSaved() const
{
    return d->mSaved;
}

bool TVLProjectModel::isModified() const
{
    return !d->mSaved;
}

QString TVLProjectModel::name() const
{
    return d->mName;
}

QDir TVLProjectModel::path() const
{
    return QDir(d->mPath);
}

bool TVLProjectModel::isMobileProject() const
{
    return d->mMobileProject;
}

TVLProjectInfo TVLProjectModel::info() const
{
    return d->mInfo;
}

void TVLProjectModel::setInfo(const TVLProjectInfo &info)
{
    d->mInfo = info;
}

QString TVLProjectModel::deviceName() const
{
    return d->mInfo.mDevice;
}

void TVLProjectModel::setDeviceName(const QString &name)
{
    d->mInfo.mDevice = name;
}

bool TVLProjectModel::backupIncluded() const
{
    return d->mBackupIncluded;
}

TVLProjectSettings *TVLProjectModel::settings() const
{
    return d->mSettings;
}

int TVLProjectModel::autoSaveSeconds() const
{
    return d->mAutoSaveSeconds;
}

QString TVLProjectModel::userProjectData() const
{
    return d->mUserProjectData;
}

void TVLProjectModel::setUserProjectData(const QString &data)
{
    d->mUserProjectData = data;
}

TVLProjectNode *TVLProjectModel::binderRoot() const
{
    return d->mRootNode.get();
}

bool TVLProjectModel::hasNodeId(int id) const
{
    return d->mIdMap.contains(id);
}

bool TVLProjectModel::hasNodeUuid(const QUuid &uuid) const
{
    return d->mUuidMap.contains(uuid);
}

QMap<int, QUuid> TVLProjectModel::idToUuid() const
{
    return d->mIdMap;
}

QList<QUuid> TVLProjectModel::uuidsList() const
{
    return d->mUuidMap.keys();
}

const TVLProjectNotes &TVLProjectModel::projectNotes() const
{
    return d->mProjectNotes;
}

bool TVLProjectModel::hasProjectNoteId(int id) const
{
    return d->mProjectNotes.hasId(id);
}

TVLKeywordModel *TVLProjectModel::keywordModel() const
{
    return d->mKeywordModel;
}

TVLSearchIndex *TVLProjectModel::searchIndex() const
{
    return d->mSearchIndex.get();
}

TVLProjectChecksums *TVLProjectModel::checksums() const
{
    return d->mChecksums.get();
}

QString TVLProjectModel::searchedPath() const
{
    return d->mPath;
}

bool TVLProjectModel::tintIcons() const
{
    return d->mTintIcons;
}

bool TVLProjectModel::hasProjectNotes() const
{
    return !d->mProjectNotes.isEmpty();
}

QString TVLProjectModel::defaultProjectTitle() const
{
    return d->mName;
}

QString TVLProjectModel::defaultProjectAbbreviatedTitle() const
{
    return d->mName;
}

QVariant TVLProjectModel::fullScreenBackdrop() const
{
    return d->mFullScreenBackdrop;
}

TVLDraftTarget TVLProjectModel::draftTarget() const
{
    return d->mDraftTarget;
}

TVLSessionTarget TVLProjectModel::sessionTarget() const
{
    return d->mSessionTarget;
}

TVLScriptMode TVLProjectModel::scriptMode() const
{
    return d->mScriptMode;
}

QList<TVLReference> TVLProjectModel::projectReferences() const
{
    return d->mProjectReferences;
}

bool TVLProjectModel::hasProjectReferences() const
{
    return !d->mProjectReferences.isEmpty();
}

TVLCustomMetaDataSettings TVLProjectModel::customMetaDataSettings() const
{
    return d->mCustomMetaDataSettings;
}

QList<TVLAutoCompleteItem> TVLProjectModel::autoCompleteList() const
{
    return d->mAutoCompleteList;
}

QString TVLProjectModel::labelTitle() const
{
    return d->mLabelTitle;
}

int TVLProjectModel::defaultLabelIdentity() const
{
    return d->mDefaultLabelId;
}

QString TVLProjectModel::statusTitle() const
{
    return d->mStatusTitle;
}

int TVLProjectModel::defaultStatusIdentity() const
{
    return d->mDefaultStatusId;
}

QList<TVLCollectionMetaData> TVLProjectModel::collections() const
{
    return d->mCollectionList->collections();
}
