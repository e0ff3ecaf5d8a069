#pragma once

namespace pg::archives {

// The suite's archives that the program opens, by number.
enum ArchiveNumber : int {
    TabelleComuni = 15,     // common tables: banks and agencies "BN ", currencies "VL "
    AnagraficheComuni = 0,  // common master data: customers and suppliers
    TabelleAzienda = 14,    // company tables: AZ1, AZ3, REL, company banks BA1/BA2/BA3
    ClientiFornitori = 3,   // the company's customers and suppliers: their bank data
    SediClientiFornitori = 42, // customer and supplier sites
    Scadenze = 38,          // due items, the only archive the program rewrites
    GruppoScadenze = 37,    // an archive of the due-item group
    Pagamenti = 55,         // payments
    Listini = 28,           // price lists
};

// Open modes of the record manager.
enum OpenMode : int {
    ReadOnly = 0,
    ReadRewrite = 2,
};

} // namespace pg::archives
