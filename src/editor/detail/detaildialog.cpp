#include "detaildialog.h"

#include "detailaccount.h"
#include "detaildueitem.h"

#include "ui/codelineedit.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace pg::editor {

namespace {

constexpr int MaxValueWidth = 420;

} // namespace

DetailDialog::DetailDialog(const QString &caption, const QString &frame, const DetailFields &fields,
                           QWidget *parent)
    : QDialog(parent), m_frame(new QGroupBox(frame, this))
{
    setWindowTitle(caption);
    auto *grid = new QGridLayout(m_frame);
    // The sections in the order of their first line, two to a row.
    QStringList sections;
    for (const DetailField &f : fields)
        if (!sections.contains(f.section))
            sections << f.section;
    for (int s = 0; s < sections.size(); ++s) {
        auto *box = new QGroupBox(sections.at(s), m_frame);
        auto *form = new QFormLayout(box);
        for (const DetailField &f : fields) {
            if (f.section != sections.at(s))
                continue;
            auto *value = new QLineEdit(f.value, box);
            value->setReadOnly(true);
            value->setObjectName(f.section + u'/' + f.label);
            value->setCursorPosition(0);
            // Wide enough for the whole value (an IBAN, an address, an e-mail), within reason.
            value->setMinimumWidth(std::min(ui::widthToShow(value, f.value), MaxValueWidth));
            form->addRow(f.label + u':', value);
        }
        grid->addWidget(box, s / 2, s % 2);
    }

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    // The data scroll where the screen is too small for them all.
    auto *scroll = new QScrollArea(this);
    scroll->setWidget(m_frame);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(scroll, 1);
    layout->addWidget(buttons);

    const QSize wanted = m_frame->sizeHint() + QSize(2 * layout->contentsMargins().left() + 24,
                                                     buttons->sizeHint().height() + 48);
    QSize available(1024, 768);
    if (const QScreen *screen = parent ? parent->screen() : this->screen())
        available = screen->availableGeometry().size();
    resize(wanted.boundedTo(available * 0.9));
}

QLineEdit *DetailDialog::valueBox(const QString &section, const QString &label) const
{
    return m_frame->findChild<QLineEdit *>(section + u'/' + label);
}

void DetailDialog::showDueItem(const archives::ErpRecord &dueItem, archives::ErpSession *erp,
                               QWidget *parent)
{
    DetailDialog dialog(DueItemDetail::title(), DueItemDetail::frame(),
                        DueItemDetail::fields(dueItem, erp), parent);
    dialog.exec();
}

void DetailDialog::showAccount(archives::ErpSession &erp, const QString &code,
                               const QString &caption, const QString &frame, QWidget *parent)
{
    DetailDialog dialog(caption, frame, AccountDetail::read(erp, code).fields(), parent);
    dialog.exec();
}

} // namespace pg::editor
