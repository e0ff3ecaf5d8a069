#pragma once

#include <QDialog>

#include <memory>

class QPrinter;
class QPushButton;
class QTableView;
class QTextDocument;

namespace pg::distinta {
class DistinteStore;
}

namespace pg::checks {

class QueryResultModel;

// "Controllo completezza dati bancari": lists the rows of every distinta whose bank data are
// blank (cmdEsegui), prints the list as "Elenco scadenze incomplete" (cmdStampa, with a
// preview), and closes (cmdAnnulla).
class frmChkBanca : public QDialog
{
    Q_OBJECT

public:
    explicit frmChkBanca(distinta::DistinteStore &store, QWidget *parent = nullptr);
    ~frmChkBanca() override;

    QueryResultModel *model() const { return m_model; }

    // The list as a document with its title, and its print on a printer.
    std::unique_ptr<QTextDocument> document() const;
    void print(QPrinter *printer) const;

    static QString printTitle() { return QStringLiteral("Elenco scadenze incomplete"); }

private:
    void cmdEsegui_Click();
    void cmdStampa_Click();

    distinta::DistinteStore &m_store;
    QueryResultModel *m_model;
    QTableView *m_lvwLista;
    QPushButton *m_cmdEsegui;
    QPushButton *m_cmdStampa;
    QPushButton *m_cmdAnnulla;
};

} // namespace pg::checks
