#pragma once

#include "TVLBinderTags_p.h"
#include "TVLProjectNodeProperties.h"

#include <QStringList>

#include <array>
#include <variant>

/** Which binders an element is written to; the reader takes it from any. */
enum class TVLBinderScope {
    Everywhere,
    DesktopOnly,
};

/**
 * An element of `MetaData` that holds one property, and where it is kept. The member's type says
 * how it is written: an id unless it is -1, a flag only when set, a text or a selection unless
 * empty.
 */
struct TVLBinderField
{
    using Id = int TVLProjectNodeProperties::*;
    using Flag = bool TVLProjectNodeProperties::*;
    using Text = QString TVLProjectNodeProperties::*;
    using Selection = QPair<int, int> TVLProjectNodeProperties::*;

    const QString &tag;
    std::variant<Id, Flag, Text, Selection> member;
    TVLBinderScope scope;
};

/** The elements of `MetaData` in writing order; `CustomMetaData` follows them. */
inline const std::array<TVLBinderField, 12> &tvlMetaDataFields()
{
    using P = TVLProjectNodeProperties;
    namespace T = TVLBinderTags;
    static const std::array<TVLBinderField, 12> fields = {{
        {T::LabelID, &P::mLabelId, TVLBinderScope::Everywhere},
        {T::StatusID, &P::mStatusId, TVLBinderScope::Everywhere},
        {T::IncludeInCompile, &P::mIncludeInCompile, TVLBinderScope::Everywhere},
        {T::FileExtension, &P::mFileExtension, TVLBinderScope::Everywhere},
        {T::IconFileName, &P::mIconFileName, TVLBinderScope::Everywhere},
        {T::PageBreakBefore, &P::mPageBreakBefore, TVLBinderScope::DesktopOnly},
        {T::CompileAsIs, &P::mCompileAsIs, TVLBinderScope::DesktopOnly},
        {T::NotesTextSelection, &P::mNotesTextSelection, TVLBinderScope::DesktopOnly},
        {T::ShowSynopsisImage, &P::mShowSynopsisImage, TVLBinderScope::DesktopOnly},
        {T::IndexCardImageFileExtension, &P::mIndexCardImageFileExtension,
         TVLBinderScope::DesktopOnly},
        {T::IgnoresTitlePrefixAndSuffix, &P::mIgnoresTitlePrefixAndSuffix,
         TVLBinderScope::DesktopOnly},
        {T::PreferredExternalApplication, &P::mPreferredExternalApplication,
         TVLBinderScope::DesktopOnly},
    }};
    return fields;
}

/** The elements of `ProjectProperties` in writing order, which are also the properties' names. */
inline const QStringList &tvlProjectPropertyTags()
{
    namespace T = TVLBinderTags;
    static const QStringList tags = {T::ProjectTitle, T::AbbreviatedTitle, T::FullName, T::LastName,
                                     T::FirstName};
    return tags;
}
