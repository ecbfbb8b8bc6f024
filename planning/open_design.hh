// Looking into another design while one is open.
#pragma once

#include "planning/tracing.hh"
#include "sdb/sdb.hh"

/// Makes a design file current, and at the end of its scope the design that was current before. Ends the run
/// when the file can't be opened.
class OPEN_DESIGN {
  public:
    explicit OPEN_DESIGN(const char *path) : before(sdb) {
        open_sdb_file(path);
    }
    ~OPEN_DESIGN() {
        close_sdb_file();
        if (before != nullptr)
            SDB_setup(before);
    }
    OPEN_DESIGN(const OPEN_DESIGN &) = delete;
    OPEN_DESIGN &operator=(const OPEN_DESIGN &) = delete;

  private:
    SDB_HANDLE *before;
};
