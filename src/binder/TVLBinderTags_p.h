#pragma once

#include <QString>

/** Names of the elements of the binder and of the files beside it. */
namespace TVLBinderTags {

inline const QString TavelinorProject = u"TavelinorProject"_qs;
inline const QString Binder = u"Binder"_qs;
inline const QString BinderItem = u"BinderItem"_qs;
inline const QString Title = u"Title"_qs;
inline const QString MetaData = u"MetaData"_qs;
inline const QString TextSettings = u"TextSettings"_qs;
inline const QString MediaSettings = u"MediaSettings"_qs;
inline const QString CorkboardAndOutliner = u"CorkboardAndOutliner"_qs;
inline const QString Keywords = u"Keywords"_qs;
inline const QString References = u"References"_qs;
inline const QString DefaultChildTemplateID = u"DefaultChildTemplateID"_qs;
inline const QString Children = u"Children"_qs;

inline const QString LabelID = u"LabelID"_qs;
inline const QString StatusID = u"StatusID"_qs;
inline const QString IncludeInCompile = u"IncludeInCompile"_qs;
inline const QString FileExtension = u"FileExtension"_qs;
inline const QString IconFileName = u"IconFileName"_qs;
inline const QString PageBreakBefore = u"PageBreakBefore"_qs;
inline const QString BreakBeforeParagraph = u"BreakBeforeParagraph"_qs;
inline const QString CompileAsIs = u"CompileAsIs"_qs;
inline const QString NotesTextSelection = u"NotesTextSelection"_qs;
inline const QString ShowSynopsisImage = u"ShowSynopsisImage"_qs;
inline const QString IndexCardImageFileExtension = u"IndexCardImageFileExtension"_qs;
inline const QString IgnoresTitlePrefixAndSuffix = u"IgnoresTitlePrefixAndSuffix"_qs;
inline const QString PreferredExternalApplication = u"PreferredExternalApplication"_qs;
inline const QString CustomMetaData = u"CustomMetaData"_qs;
inline const QString MetaDataItem = u"MetaDataItem"_qs;
inline const QString FieldID = u"FieldID"_qs;
inline const QString Value = u"Value"_qs;

inline const QString TextMode = u"TextMode"_qs;
inline const QString TextSelection = u"TextSelection"_qs;
inline const QString TypingAttributesRTFData = u"TypingAttributesRTFData"_qs;
inline const QString Target = u"Target"_qs;

inline const QString ImageScaleFactor = u"ImageScaleFactor"_qs;
inline const QString ImageRotation = u"ImageRotation"_qs;
inline const QString ImageScalesProportionally = u"ImageScalesProportionally"_qs;
inline const QString OriginalURL = u"OriginalURL"_qs;
inline const QString IsAlias = u"IsAlias"_qs;
inline const QString CurrentPDFPage = u"CurrentPDFPage"_qs;

inline const QString SelectedSubdocumentIDs = u"SelectedSubdocumentIDs"_qs;
inline const QString CorkboardSettings = u"CorkboardSettings"_qs;
inline const QString FreeformMode = u"FreeformMode"_qs;
inline const QString FreeformCorkboardDocuments = u"FreeformCorkboardDocuments"_qs;
inline const QString IndexCardBinderID = u"IndexCardBinderID"_qs;

inline const QString KeywordID = u"KeywordID"_qs;
inline const QString Reference = u"Reference"_qs;

inline const QString LabelSettings = u"LabelSettings"_qs;
inline const QString DefaultLabelID = u"DefaultLabelID"_qs;
inline const QString Labels = u"Labels"_qs;
inline const QString Label = u"Label"_qs;
inline const QString StatusSettings = u"StatusSettings"_qs;
inline const QString DefaultStatusID = u"DefaultStatusID"_qs;
inline const QString StatusItems = u"StatusItems"_qs;
inline const QString Status = u"Status"_qs;
inline const QString TemplateFolderUUID = u"TemplateFolderUUID"_qs;
inline const QString TemplateFolderID = u"TemplateFolderID"_qs;

inline const QString Collections = u"Collections"_qs;
inline const QString Collection = u"Collection"_qs;
inline const QString SearchSettings = u"SearchSettings"_qs;
inline const QString BinderIDs = u"BinderIDs"_qs;
inline const QString BinderID = u"BinderID"_qs;
inline const QString Keyword = u"Keyword"_qs;

inline const QString CustomMetaDataSettings = u"CustomMetaDataSettings"_qs;
inline const QString MetaDataField = u"MetaDataField"_qs;
inline const QString ProjectProperties = u"ProjectProperties"_qs;
inline const QString ProjectTitle = u"ProjectTitle"_qs;
inline const QString AbbreviatedTitle = u"AbbreviatedTitle"_qs;
inline const QString FullName = u"FullName"_qs;
inline const QString LastName = u"LastName"_qs;
inline const QString FirstName = u"FirstName"_qs;
inline const QString ProjectTargets = u"ProjectTargets"_qs;
inline const QString DraftTarget = u"DraftTarget"_qs;
inline const QString SessionTarget = u"SessionTarget"_qs;
inline const QString Favorites = u"Favorites"_qs;
inline const QString AutoCompleteList = u"AutoCompleteList"_qs;
inline const QString Completion = u"Completion"_qs;
inline const QString BackupSettings = u"BackupSettings"_qs;
inline const QString Exclude = u"Exclude"_qs;
inline const QString FullScreenBackdrop = u"FullScreenBackdrop"_qs;
inline const QString ProjectReferences = u"ProjectReferences"_qs;
inline const QString PrintSettings = u"PrintSettings"_qs;
inline const QString PaperType = u"PaperType"_qs;
inline const QString LeftMargin = u"LeftMargin"_qs;
inline const QString RightMargin = u"RightMargin"_qs;
inline const QString TopMargin = u"TopMargin"_qs;
inline const QString BottomMargin = u"BottomMargin"_qs;
inline const QString Orientation = u"Orientation"_qs;
inline const QString Collates = u"Collates"_qs;
inline const QString ReverseOrder = u"ReverseOrder"_qs;
inline const QString UserProjectData = u"UserProjectData"_qs;

inline const QString Comments = u"Comments"_qs;
inline const QString Comment = u"Comment"_qs;
inline const QString Links = u"Links"_qs;
inline const QString TavelinorLinks = u"TavelinorLinks"_qs;
inline const QString TextLinks = u"TextLinks"_qs;
inline const QString NotesLinks = u"NotesLinks"_qs;
inline const QString LinkID = u"LinkID"_qs;
inline const QString CommentsAndFootnotes = u"CommentsAndFootnotes"_qs;
inline const QString Color = u"Color"_qs;
inline const QString RTF = u"RTF"_qs;
inline const QString Snapshots = u"Snapshots"_qs;
inline const QString Snapshot = u"Snapshot"_qs;
inline const QString Date = u"Date"_qs;
inline const QString ProjectNotes = u"ProjectNotes"_qs;
inline const QString Note = u"Note"_qs;
} // namespace TVLBinderTags

/** Names of their attributes. */
namespace TVLBinderAttributes {

inline const QString Template = u"Template"_qs;
inline const QString Version = u"Version"_qs;
inline const QString Creator = u"Creator"_qs;
inline const QString Device = u"Device"_qs;
inline const QString Modified = u"Modified"_qs;
inline const QString ModID = u"ModID"_qs;
inline const QString SyncID = u"SyncID"_qs;
inline const QString Checksums = u"Checksums"_qs;
inline const QString NewProject = u"NewProject"_qs;
inline const QString ID = u"ID"_qs;
inline const QString UUID = u"UUID"_qs;
inline const QString Created = u"Created"_qs;
inline const QString Type = u"Type"_qs;
inline const QString Notify = u"Notify"_qs;
inline const QString AllowOver = u"AllowOver"_qs;
inline const QString Buffer = u"Buffer"_qs;
inline const QString BinderID = u"BinderID"_qs;
inline const QString Destination = u"Destination"_qs;
inline const QString Position = u"Position"_qs;
inline const QString TimeStamp = u"TimeStamp"_qs;
inline const QString Color = u"Color"_qs;
inline const QString Operator = u"Operator"_qs;
inline const QString Scope = u"Scope"_qs;
inline const QString CompileSetting = u"CompileSetting"_qs;
inline const QString CaseSensitive = u"CaseSensitive"_qs;
inline const QString Footnote = u"Footnote"_qs;
inline const QString IsFootnote = u"IsFootnote"_qs;
inline const QString FootnoteNumber = u"FootnoteNumber"_qs;
inline const QString Number = u"Number"_qs;
inline const QString Collapsed = u"Collapsed"_qs;
inline const QString Range = u"Range"_qs;
inline const QString Wraps = u"Wraps"_qs;
inline const QString CountIncludedOnly = u"CountIncludedOnly"_qs;
inline const QString CurrentCompileGroupOnly = u"CurrentCompileGroupOnly"_qs;
inline const QString ShowOverrun = u"ShowOverrun"_qs;
inline const QString Deadline = u"Deadline"_qs;
inline const QString IgnoreDeadline = u"IgnoreDeadline"_qs;
inline const QString CountDraftOnly = u"CountDraftOnly"_qs;
inline const QString AllowNegatives = u"AllowNegatives"_qs;
inline const QString ResetType = u"ResetType"_qs;
inline const QString DeterminedFromDeadline = u"DeterminedFromDeadline"_qs;
inline const QString CanWriteOnDeadlineDate = u"CanWriteOnDeadlineDate"_qs;
inline const QString WritingDays = u"WritingDays"_qs;

} // namespace TVLBinderAttributes
