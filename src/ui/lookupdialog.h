#pragma once

#include "archives/store/lookupservice.h"

#include <QDialog>

#include <functional>

class QLineEdit;
class QTableView;

namespace pg::ui {

class LookupModel;

// The F4 lookup window: a list of the suite's codes with a search box. Typing in the box
// narrows the list; Enter or a double click chooses the entry, Escape closes without a choice.
class LookupDialog : public QDialog
{
    Q_OBJECT

public:
    // Reads the list for a filter text.
    using Source = std::function<archives::LookupList(const QString &filter)>;

    LookupDialog(Source source, QWidget *parent = nullptr);

    // The chosen entry's text, empty when none was chosen.
    QString choice() const { return m_choice; }
    QTableView *view() const { return m_view; }
    QLineEdit *filterBox() const { return m_filter; }

    // Opens the window modally and returns the choice (empty when closed without one).
    static QString choose(Source source, QWidget *parent, const QString &filter = {});

    // The lists of the F4 key, over the session's lookup service.
    static QString banksAndAgencies(archives::LookupService &service, QWidget *parent);
    static QString accounts(archives::LookupService &service, QWidget *parent,
                            archives::LookupService::AccountKind kind);
    static QString currencies(archives::LookupService &service, QWidget *parent);

    // Chooses the entry of the current line.
    void chooseCurrent();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void refill();

    Source m_source;
    LookupModel *m_model;
    QTableView *m_view;
    QLineEdit *m_filter;
    QString m_choice;
};

} // namespace pg::ui
