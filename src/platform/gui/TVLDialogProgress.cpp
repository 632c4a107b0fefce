#include "TVLDialogProgress.h"

#include <QProgressDialog>

#include <utility>

TVLDialogProgress::TVLDialogProgress(Look look, QWidget *parent)
    : mLook(std::move(look))
    , mParent(parent)
    , mIsOwner(true)
{
}

TVLDialogProgress::TVLDialogProgress(QProgressDialog *dialog)
    : mDialog(dialog)
    , mIsOwner(false)
{
}

TVLDialogProgress::~TVLDialogProgress()
{
    if (mIsOwner)
        delete mDialog;
}

std::unique_ptr<TVLProgress> TVLDialogProgress::make(bool isShown, const Look &look,
                                                     QWidget *parent)
{
    if (!isShown)
        return std::make_unique<TVLProgress>();
    if (auto made = madeByMaker())
        return made;
    return std::make_unique<TVLDialogProgress>(look, parent);
}

void TVLDialogProgress::begin(const QString &text, int total)
{
    if (mIsOwner) {
        makeDialog(text, total);
    } else if (mDialog) {
        mDialog->setLabelText(text);
        mDialog->setMaximum(total);
        mDialog->setValue(0);
    }
}

void TVLDialogProgress::makeDialog(const QString &text, int total)
{
    delete mDialog;
    mDialog = new QProgressDialog(text, mLook.cancelText, 0, total, mParent, mLook.flags);
    // A dialog that went with its window would do so in the midst of running the event loop.
    if (mParent) {
        QObject::connect(mParent, &QObject::destroyed, mDialog,
                         [dialog = mDialog.data()] { dialog->setParent(nullptr); });
    }
    mDialog->setWindowTitle(mLook.title);
    mDialog->setWindowModality(mLook.modality);
    if (mLook.isShownAtOnce) {
        mDialog->setMinimumDuration(0);
        mDialog->setValue(0);
    }
}

void TVLDialogProgress::advance(int steps)
{
    if (mDialog)
        mDialog->setValue(mDialog->value() + steps);
}

bool TVLDialogProgress::isCanceled() const
{
    return mDialog && mDialog->wasCanceled();
}

void TVLDialogProgress::finish()
{
    if (mIsOwner)
        delete mDialog;
    else if (mDialog)
        mDialog->reset();
}
