// Text configuration files edited in place: the whole file is read into
// memory and split into lines, single values are replaced inside their lines
// without disturbing the rest (quotes, comments, other keys), and the lines
// are written back. Two line styles: "KEY = value" lines and rows of
// delimiter-separated columns.
#pragma once

#include <stddef.h>
#include <stdint.h>

inline constexpr int kTcfgMaxLines = 32768;
inline constexpr int kTcfgMaxColumns = 128;
inline constexpr int kTcfgPathSize = 256;   // 255 characters and the NUL
inline constexpr int kTcfgValueSize = 128;  // working buffer of the setters

// One open file. Allocated zero-filled by new_cfg or create_mem_cfg, owned by
// the caller until free_cfg.
struct tcfg {
  char path[kTcfgPathSize];  // empty for an in-memory object
  uint32_t size;             // file size when the object was made
  char* text;                // size+1 bytes; the lines as read point into it
  char* lines[kTcfgMaxLines];
  int32_t lineCount;
  // How far into the text the lines reach: short of size when a NUL byte
  // or the line limit cut the rest off, which a save would then lose.
  uint32_t held;
  // The heap copy holding each replaced or added line, or null.
  char* owned[kTcfgMaxLines];
};

// The object for an existing file, not yet loaded. With `create`, a missing
// file is first created empty. Null on failure.
tcfg* new_cfg(const char* path, bool create);

// Creates the file if it is missing (mode 0744), never through a link. 0 or -1.
int create_cfg_file(const char* path);

// An object over a copy of `length` bytes, already split into lines. It has
// no path, so it cannot be loaded or saved.
tcfg* create_mem_cfg(const char* data, size_t length);

// Puts a copy of `length` bytes in place of the text of an object that
// create_mem_cfg made, split into lines the same way; its replaced and
// added lines are freed. One object then serves text after text without
// its line table being allocated again. 0, or -1 with the object unchanged.
int reload_mem_cfg(tcfg* cfg, const char* data, size_t length);

// Reads the file and splits it into lines, through one descriptor from the
// open to the end of the file; a link is not followed, and only a regular
// file is read. The line count; -1 when it cannot be read, -2 when its size
// is not the one new_cfg took or changed while it was read (nothing is
// loaded cut short).
int load_cfg(tcfg* cfg);

// Copies the value of the occurrence-th "KEY = value" line at or after
// `startLine` into `out`. The line index, or -1 with `out` emptied.
int get_cfg_value(
    tcfg* cfg, const char* key, char* out, int outSize, int occurrence, int startLine);
int get_cfg_value(tcfg* cfg, const char* key, char* out, int outSize);

// Replaces that value with `newValue`, keeping the rest of the line. A key
// that is not in the file is never added. 0 or -1.
int set_cfg_value(tcfg* cfg, const char* key, const char* newValue, int occurrence, int startLine);
int set_cfg_value(tcfg* cfg, const char* key, const char* newValue);

// Writes every line, each ended by LF, to the object's path. 0 or -1.
int save_cfg(tcfg* cfg);

// Frees the replaced lines, the text and the object; null is ignored.
void free_cfg(tcfg* cfg);

// Column `col` (from 0) of line `row`, split on any run of `delimiters`.
// 0, or -1 with `out` emptied.
int get_cfg_col(tcfg* cfg, int row, int col, const char* delimiters, char* out, int outSize);

// Column `col` of the occurrence-th row whose column `keyCol` reads
// `keyText`. The row index, or -1 with `out` emptied.
int find_cfg_row(tcfg* cfg, int keyCol, const char* keyText, int col, const char* delimiters,
    char* out, int outSize, int occurrence);

// Replaces column `col` of the row find_cfg_row would pick. 0 or -1.
int set_cfg_col(tcfg* cfg, int keyCol, const char* keyText, int col, const char* delimiters,
    const char* newValue, int occurrence);

// Appends a copy of `text` as the new last line. 0 or -1.
int add_cfg_line(tcfg* cfg, const char* text);

// Every line to standard error, with its index.
void dump_cfg(tcfg* cfg);
