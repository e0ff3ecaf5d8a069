#pragma once

#include "distintelistfilter.h"

#include <QDialog>

#include <array>

class QGroupBox;
class QLineEdit;
class QPushButton;
class QTableView;

namespace pg::distinta {
class DistinteStore;
}
namespace pg::ui {
class MaskedDateEdit;
}

namespace pg::lists {

class DistinteListModel;

// frmLista: the saved distinte, optionally narrowed by number and creation date ranges. A
// double click or Enter hands back the distinta of the selected line and closes; Escape
// closes without choosing.
class DistinteListDialog : public QDialog
{
    Q_OBJECT

public:
    explicit DistinteListDialog(distinta::DistinteStore &store, QWidget *parent = nullptr);

    // The chosen distinta's code (as stored), empty when none was chosen.
    QString chosenCode() const { return m_chosen; }

    // Opens the list modally; the chosen code or nothing.
    static std::optional<QString> choose(distinta::DistinteStore &store, QWidget *parent);

    // RiempiLista: reads the list with the parameters in the boxes.
    void RiempiLista();
    // cmdParam: opens the parameter area.
    void openParameters();
    bool parametersOpen() const { return m_paramOpen; }
    // Takes the selected line's distinta (if any) and closes.
    void chooseSelected();
    DistinteListFilter filter() const;

    QTableView *lvwLista() const { return m_view; }
    DistinteListModel *model() const { return m_model; }
    QLineEdit *txtParamNum(int index) const { return m_numbers.at(index); }
    ui::MaskedDateEdit *mskParamData(int index) const { return m_dates.at(index); }
    QGroupBox *fraParam() const { return m_param; }
    QPushButton *cmdParam() const { return m_cmdParam; }

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void sortBy(int column);

    distinta::DistinteStore *m_store;
    DistinteListModel *m_model;
    QTableView *m_view;
    QGroupBox *m_param;
    QPushButton *m_cmdParam;
    std::array<QLineEdit *, 2> m_numbers{};
    std::array<ui::MaskedDateEdit *, 2> m_dates{};
    QString m_chosen;
    bool m_paramOpen = false;
};

} // namespace pg::lists
