/*
 * What the model gives the writer of its binder, and what it takes over from the reader. A read
 * goes into mRead, section by section, and from there to where the model keeps it: by the public
 * setters, which mark nothing during a read, unless a comment says why not.
 */
#include "TVLProjectModel_p.h"

#include "TVLBinderFields_p.h"
#include "TVLCollectionList_p.h"
#include "TVLLoadedDocuments_p.h"

#include <QPrinter>

#include <algorithm>
#include <utility>
#include <variant>

TVLBinderSections TVLProjectModel::binderSections() const
{
    TVLBinderSections sections;
    sections.mInfo = d->mInfo;
    sections.mLabelTitle = d->mLabelTitle;
    sections.mDefaultLabelId = d->mDefaultLabelId;
    sections.mLabels = labels();
    sections.mStatusTitle = d->mStatusTitle;
    sections.mDefaultStatusId = d->mDefaultStatusId;
    sections.mStatusItems = statusItems();
    sections.mTemplateFolderUuid = templateFolderUuid();
    if (d->mMobileProject)
        return sections;
    sections.mCollections = collections();
    sections.mKeywords = projectKeywords();
    sections.mCustomMetaDataSettings = d->mCustomMetaDataSettings;
    for (const QString &tag : tvlProjectPropertyTags())
        sections.mProperties.insert(tag, projectProperty(tag));
    sections.mDraftTarget = d->mDraftTarget;
    sections.mSessionTarget = d->mSessionTarget;
    sections.mNotifyTargets = notifyTargets();
    sections.mFavorites = favoriteIds();
    sections.mAutoCompleteList = d->mAutoCompleteList;
    sections.mBackupIncluded = d->mBackupIncluded;
    sections.mFullScreenBackdrop = d->mFullScreenBackdrop;
    sections.mProjectReferences = d->mProjectReferences;
    (void)printer(); // Makes it.
    sections.mPrinter = d->mPrinter;
    sections.mUserProjectData = d->mUserProjectData;
    return sections;
}

TVLBinderSections *TVLProjectModel::beginBinderRead()
{
    beginResetModel();
    d->mWasSuspended = std::exchange(d->mSuspendModified, true);
    d->mIdMap.clear();
    d->mUuidMap.clear();
    d->mDocuments->forgetChanges();
    d->mRead = {};
    return &d->mRead;
}

void TVLProjectModel::endBinderRead()
{
    d->mSuspendModified = d->mWasSuspended;
    d->mRead = {};
    endResetModel();
    markProjectAsModified(std::exchange(d->mIsModifiedByRead, false));
}

void TVLProjectModel::enterNodes(const QList<TVLProjectNode *> &nodes)
{
    tvlEnterNodes(nodes, &d->mIdMap, &d->mUuidMap);
}

bool TVLProjectModel::adoptSection(TVLBinderSection section)
{
    using Effect = TVLProjectModelPrivate::ListEffect;
    const TVLBinderSections &read = d->mRead;
    switch (section) {
    case TVLBinderSection::Labels:
        d->replaceLabels(read.mLabels, Effect::ItemsStay);
        setDefaultLabelIdentity(read.mDefaultLabelId);
        setLabelTitle(read.mLabelTitle);
        break;
    case TVLBinderSection::StatusItems:
        d->replaceStatusItems(read.mStatusItems, Effect::ItemsStay);
        setDefaultStatusIdentity(read.mDefaultStatusId);
        setStatusTitle(read.mStatusTitle);
        break;
    case TVLBinderSection::TemplateFolder:
        for (const TVLBinderSections::ItemName &name : read.mTemplateFolderNames)
            std::visit([this](const auto &item) { adoptTemplateFolder(item); }, name);
        break;
    case TVLBinderSection::Collections:
        setCollections(read.mCollections);
        break;
    case TVLBinderSection::Keywords:
        // Those of one list at a time: a binder with two of them is read in their order.
        addProjectKeywords(std::exchange(d->mRead.mKeywords, {}));
        break;
    case TVLBinderSection::CustomMetaDataSettings:
        // A binder says beside the fields what items hold in them, also in ones that it lacks.
        d->mCustomMetaDataSettings = read.mCustomMetaDataSettings;
        break;
    case TVLBinderSection::Properties:
        for (auto property = read.mProperties.cbegin(); property != read.mProperties.cend();
             ++property)
            setProjectProperty(property.key(), property.value());
        break;
    case TVLBinderSection::Targets:
        setDraftTarget(read.mDraftTarget);
        setSessionTarget(read.mSessionTarget);
        setNotifyTargets(read.mNotifyTargets);
        break;
    case TVLBinderSection::Favorites:
        return d->adoptFavorites(read.mFavorites);
    case TVLBinderSection::AutoCompleteList:
        setAutoCompleteList(read.mAutoCompleteList);
        break;
    case TVLBinderSection::Backup:
        adoptBackupIncluded(read.mBackupIncluded);
        break;
    case TVLBinderSection::FullScreenBackdrop:
        if (read.mFullScreenBackdrop.isValid())
            setFullScreenBackdrop(read.mFullScreenBackdrop);
        break;
    case TVLBinderSection::ProjectReferences:
        setProjectReferences(read.mProjectReferences);
        break;
    case TVLBinderSection::Printer:
        d->mPrinter = read.mPrinter;
        break;
    }
    return true;
}

/** Opening a project changes no item, and so nothing is told of each. */
bool TVLProjectModelPrivate::adoptFavorites(const QList<int> &ids)
{
    return std::all_of(ids.cbegin(), ids.cend(), [this](int id) {
        const QModelIndex item = q->index(id);
        if (item.isValid())
            mCollectionList->adoptFavorite(q->projectNode(item), id);
        return item.isValid();
    });
}
