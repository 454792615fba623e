#include "tcfg/tcfg_util.h"

#include "filesys/atomic_file.h"

#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The numbers in the log lines are part of their text, as the device's logs
// have always shown them; they are not this file's own line numbers.
enum LogLine : int {
  kLineCreateOpen = 54,
  kLineNotExist = 129,
  kLineCreateFailed = 135,
  kLineObjectMalloc = 146,
  kLineLongPath = 157,
  kLineTextMalloc = 166,
  kLineLoadNull = 224,
  kLineLoadOpen = 231,
  kLineLoadRead = 239,
  kLineSaveNull = 262,
};

[[gnu::format(printf, 3, 4)]] void log_failure(
    const char* function, int line, const char* format, ...) {
  fprintf(stderr, "[%s:%s(%d)]\t", function, "tcfg_util", line);
  va_list args;
  va_start(args, format);
  vfprintf(stderr, format, args);
  va_end(args);
}

void log_short_buffer() { fputs("insufficient string buffer size\n", stderr); }

bool is_line_break(char c) { return c == '\n' || c == '\r'; }

bool is_key_separator(char c) { return c == ' ' || c == '=' || c == '\t'; }

bool is_quote(char c) { return c == '"' || c == '\''; }

bool ends_value(char c) { return c == '\0' || c == ';' || is_quote(c) || c == '#' || c == '\r'; }

// Forgets every replaced line; the lines point into the text again after
// the next split. Only lines below the count are ever owned (a split starts
// from none owned, a replacement is of a counted line, an added line is
// counted), so the rest of the table is never walked.
void release_owned(tcfg* cfg) {
  for (int i = 0; i < cfg->lineCount; ++i) {
    free(cfg->owned[i]);
    cfg->owned[i] = nullptr;
  }
  cfg->lineCount = 0;
}

// Splits the text in place on runs of CR and LF. Text after the last line
// the table can hold stays unreachable.
int split_lines(tcfg* cfg) {
  char* p = cfg->text;
  int count = 0;
  while (count < kTcfgMaxLines) {
    while (is_line_break(*p)) ++p;
    if (*p == '\0') break;
    cfg->lines[count++] = p;
    while (*p != '\0' && !is_line_break(*p)) ++p;
    if (*p == '\0') break;
    *p++ = '\0';
  }
  while (is_line_break(*p)) ++p;
  cfg->lineCount = count;
  cfg->held = static_cast<uint32_t>(p - cfg->text);
  return count;
}

// Where a value sits inside its line.
struct Span {
  size_t offset;
  size_t length;
};

// The line index of the occurrence-th "KEY = value" line at or after
// `startLine`, or -1.
int find_value(const tcfg* cfg, const char* key, int occurrence, int startLine, Span* span) {
  if (occurrence < 0 || startLine < 0) return -1;
  const size_t keyLength = strlen(key);
  int skipped = 0;
  for (int i = startLine; i < cfg->lineCount; ++i) {
    const char* line = cfg->lines[i];
    // strncmp stops at the end of a shorter line, so line[keyLength] is
    // read only when the whole key matched.
    if (!line || strncmp(line, key, keyLength) != 0 || !is_key_separator(line[keyLength])) continue;
    if (skipped++ < occurrence) continue;

    const char* value = line + keyLength;
    while (is_key_separator(*value)) ++value;
    if (is_quote(*value)) ++value;
    const char* end = value;
    while (!ends_value(*end)) ++end;
    // Blanks before a comment or the line end belong to the layout.
    while (end > value && (end[-1] == ' ' || end[-1] == '\t')) --end;
    span->offset = static_cast<size_t>(value - line);
    span->length = static_cast<size_t>(end - value);
    return i;
  }
  return -1;
}

// The token of column `col`, or false when the row has fewer columns.
bool find_column(const char* row, int col, const char* delimiters, Span* token) {
  const char* p = row;
  for (int i = 0; i < kTcfgMaxColumns; ++i) {
    p += strspn(p, delimiters);
    if (*p == '\0') return false;
    const size_t length = strcspn(p, delimiters);
    if (i == col) {
      token->offset = static_cast<size_t>(p - row);
      token->length = length;
      return true;
    }
    p += length;
  }
  return false;
}

// The value inside a column token: one opening quote skipped, ended by a
// quote or the token's end.
Span column_value(const char* row, Span token) {
  const char* value = row + token.offset;
  const char* tokenEnd = value + token.length;
  if (value < tokenEnd && is_quote(*value)) ++value;
  const char* end = value;
  while (end < tokenEnd && !is_quote(*end)) ++end;
  return {static_cast<size_t>(value - row), static_cast<size_t>(end - value)};
}

bool column_index_valid(int col) {
  if (col > kTcfgMaxColumns) {
    fputs("too large col\n", stderr);
    return false;
  }
  return col >= 0;
}

// The occurrence-th row whose key column reads keyText, and the value of its
// column `col` in that row; -1 when there is none.
int find_row(const tcfg* cfg, int keyCol, const char* keyText, int col, const char* delimiters,
    int occurrence, Span* value) {
  if (occurrence < 0) return -1;
  const size_t keyLength = strlen(keyText);
  int skipped = 0;
  for (int i = 0; i < cfg->lineCount; ++i) {
    const char* row = cfg->lines[i];
    Span token;
    if (!row || !find_column(row, keyCol, delimiters, &token)) continue;
    const Span key = column_value(row, token);
    if (key.length != keyLength || memcmp(row + key.offset, keyText, keyLength) != 0) continue;
    if (skipped++ < occurrence) continue;
    if (!find_column(row, col, delimiters, &token)) return -1;
    *value = column_value(row, token);
    return i;
  }
  return -1;
}

// Refuses a value that would not fit a buffer of `bufferSize` bytes.
bool fits(Span value, int bufferSize) {
  if (value.length <= static_cast<size_t>(bufferSize - 1)) return true;
  log_short_buffer();
  return false;
}

bool copy_out(const char* row, Span value, char* out, int outSize) {
  if (!fits(value, outSize)) return false;
  memcpy(out, row + value.offset, value.length);
  out[value.length] = '\0';
  return true;
}

// Replaces `span` of line `index` with `newValue`; the head and the whole
// tail of the line are kept.
int replace_in_line(tcfg* cfg, int index, Span span, const char* newValue) {
  const char* line = cfg->lines[index];
  const char* tail = line + span.offset + span.length;
  const size_t valueLength = strlen(newValue);
  const size_t tailLength = strlen(tail);
  char* replaced = static_cast<char*>(malloc(span.offset + valueLength + tailLength + 1));
  if (!replaced) {
    perror("malloc error");
    return -1;
  }
  memcpy(replaced, line, span.offset);
  memcpy(replaced + span.offset, newValue, valueLength);
  memcpy(replaced + span.offset + valueLength, tail, tailLength + 1);
  // The old line may itself be the previous replacement: free it last.
  free(cfg->owned[index]);
  cfg->owned[index] = replaced;
  cfg->lines[index] = replaced;
  return 0;
}

}  // namespace

int create_cfg_file(const char* path) {
  if (!path) return -1;
  // Never through a link, nor waiting on a FIFO.
  const int fd =
      open(path, O_RDONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0744);
  if (fd < 0) {
    log_failure("create_cfg_file", kLineCreateOpen, "fail to open %s. errno: %d\n", path, errno);
    return -1;
  }
  close(fd);
  return 0;
}

tcfg* new_cfg(const char* path, bool create) {
  if (!path) return nullptr;
  struct stat st;
  if (stat(path, &st) != 0) {
    if (!create) {
      log_failure("new_cfg", kLineNotExist, "%s does not exist\n", path);
      return nullptr;
    }
    if (create_cfg_file(path) != 0 || stat(path, &st) != 0) {
      log_failure("new_cfg", kLineCreateFailed, "fail to create %s\n", path);
      return nullptr;
    }
  }

  tcfg* cfg = static_cast<tcfg*>(calloc(1, sizeof(tcfg)));
  if (!cfg) {
    log_failure("new_cfg", kLineObjectMalloc, "malloc error\n");
    return nullptr;
  }
  if (strlen(path) >= sizeof cfg->path) {
    log_failure("new_cfg", kLineLongPath, "so long file path\n");
    free(cfg);
    return nullptr;
  }
  memcpy(cfg->path, path, strlen(path) + 1);

  // The size is a 32-bit field; a larger file cannot be held anyway.
  if (st.st_size < 0 || static_cast<uint64_t>(st.st_size) >= UINT32_MAX) {
    log_failure("new_cfg", kLineTextMalloc, "malloc error\n");
    free(cfg);
    return nullptr;
  }
  cfg->size = static_cast<uint32_t>(st.st_size);
  cfg->text = static_cast<char*>(malloc(static_cast<size_t>(cfg->size) + 1));
  if (!cfg->text) {
    log_failure("new_cfg", kLineTextMalloc, "malloc error\n");
    free(cfg);
    return nullptr;
  }
  cfg->text[0] = '\0';
  cfg->lineCount = 0;
  return cfg;
}

tcfg* create_mem_cfg(const char* data, size_t length) {
  if (!data && length > 0) return nullptr;
  if (length >= UINT32_MAX) return nullptr;
  tcfg* cfg = static_cast<tcfg*>(calloc(1, sizeof(tcfg)));
  if (!cfg) {
    perror("malloc error");
    return nullptr;
  }
  if (reload_mem_cfg(cfg, data, length) != 0) {
    free(cfg);
    return nullptr;
  }
  return cfg;
}

int reload_mem_cfg(tcfg* cfg, const char* data, size_t length) {
  if (!cfg || cfg->path[0] != '\0') return -1;
  if ((!data && length > 0) || length >= UINT32_MAX) return -1;
  char* text = static_cast<char*>(malloc(length + 1));
  if (!text) {
    perror("malloc error");
    return -1;
  }
  if (length > 0) memcpy(text, data, length);
  text[length] = '\0';
  // The lines, replaced ones too, point into the old text.
  release_owned(cfg);
  free(cfg->text);
  cfg->text = text;
  cfg->size = static_cast<uint32_t>(length);
  split_lines(cfg);
  return 0;
}

int load_cfg(tcfg* cfg) {
  if (!cfg) {
    log_failure("load_cfg", kLineLoadNull, "argument is NULL\n");
    return -1;
  }
  // One descriptor from the open to the end of the file: never waits on a
  // FIFO, follows no link, and reads only a regular file.
  const int fd = open(cfg->path, O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC);
  if (fd < 0) {
    log_failure("load_cfg", kLineLoadOpen, "fail to open %s. errno: %d\n", cfg->path, errno);
    return -1;
  }
  // The read overwrites the text the current lines point into.
  release_owned(cfg);
  struct stat st;
  int result = fstat(fd, &st) == 0 ? 0 : -1;
  if (result == 0 && !S_ISREG(st.st_mode)) {
    errno = S_ISDIR(st.st_mode) ? EISDIR : EINVAL;
    result = -1;
  }
  // A file replaced or written to since new_cfg took its size is not
  // loaded cut short: its size must be the same before, during and after.
  if (result == 0 && static_cast<uint64_t>(st.st_size) != cfg->size) result = -2;
  // Read to the end of the file: the byte past the size, when there is
  // one, shows the file grew.
  for (size_t got = 0; result == 0;) {
    const ssize_t n = read(fd, cfg->text + got, cfg->size + 1 - got);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      if (n < 0 || got != cfg->size) result = n < 0 ? -1 : -2;
      break;
    }
    got += static_cast<size_t>(n);
    if (got > cfg->size) result = -2;
  }
  close(fd);
  if (result != 0) {
    if (result == -2) errno = 0;
    log_failure("load_cfg", kLineLoadRead, "fail to read %s. errno: %d\n", cfg->path, errno);
    cfg->text[0] = '\0';
    return result;
  }
  cfg->text[cfg->size] = '\0';
  return split_lines(cfg);
}

int get_cfg_value(
    tcfg* cfg, const char* key, char* out, int outSize, int occurrence, int startLine) {
  if (!out || outSize <= 0) return -1;
  out[0] = '\0';
  if (!cfg || !key) return -1;
  Span span;
  const int index = find_value(cfg, key, occurrence, startLine, &span);
  if (index < 0) return -1;
  if (!copy_out(cfg->lines[index], span, out, outSize)) return -1;
  return index;
}

int get_cfg_value(tcfg* cfg, const char* key, char* out, int outSize) {
  return get_cfg_value(cfg, key, out, outSize, 0, 0);
}

int set_cfg_value(tcfg* cfg, const char* key, const char* newValue, int occurrence, int startLine) {
  if (!cfg || !key || !newValue) return -1;
  Span span;
  const int index = find_value(cfg, key, occurrence, startLine, &span);
  if (index < 0 || !fits(span, kTcfgValueSize)) return -1;
  return replace_in_line(cfg, index, span, newValue);
}

int set_cfg_value(tcfg* cfg, const char* key, const char* newValue) {
  return set_cfg_value(cfg, key, newValue, 0, 0);
}

int save_cfg(tcfg* cfg) {
  if (!cfg) {
    log_failure("save_cfg", kLineSaveNull, "argument is NULL\n");
    return -1;
  }
  // The text replaces the file whole, once it is on the disk.
  Replacement replacement;
  if (!OpenReplacement(replacement, cfg->path)) {
    perror("open error");
    return -1;
  }
  for (int i = 0; i < cfg->lineCount; ++i) {
    if (!cfg->lines[i]) continue;
    fputs(cfg->lines[i], replacement.file);
    fputc('\n', replacement.file);
  }
  const int placed = CommitReplacement(replacement, cfg->path);
  if (placed != 0) perror(placed == -1 ? "write error" : "open error");
  return placed == 0 ? 0 : -1;
}

void free_cfg(tcfg* cfg) {
  if (!cfg) return;
  release_owned(cfg);
  free(cfg->text);
  free(cfg);
}

int get_cfg_col(tcfg* cfg, int row, int col, const char* delimiters, char* out, int outSize) {
  if (!out || outSize <= 0) return -1;
  out[0] = '\0';
  if (!cfg || !delimiters || !column_index_valid(col)) return -1;
  if (row < 0 || row >= cfg->lineCount || !cfg->lines[row]) return -1;
  Span token;
  if (!find_column(cfg->lines[row], col, delimiters, &token)) return -1;
  return copy_out(cfg->lines[row], column_value(cfg->lines[row], token), out, outSize) ? 0 : -1;
}

int find_cfg_row(tcfg* cfg, int keyCol, const char* keyText, int col, const char* delimiters,
    char* out, int outSize, int occurrence) {
  if (!out || outSize <= 0) return -1;
  out[0] = '\0';
  if (!cfg || !keyText || !delimiters) return -1;
  if (!column_index_valid(keyCol) || !column_index_valid(col)) return -1;
  Span value;
  const int index = find_row(cfg, keyCol, keyText, col, delimiters, occurrence, &value);
  if (index < 0) return -1;
  return copy_out(cfg->lines[index], value, out, outSize) ? index : -1;
}

int set_cfg_col(tcfg* cfg, int keyCol, const char* keyText, int col, const char* delimiters,
    const char* newValue, int occurrence) {
  if (!cfg || !keyText || !delimiters || !newValue) return -1;
  if (!column_index_valid(keyCol) || !column_index_valid(col)) return -1;
  Span value;
  const int index = find_row(cfg, keyCol, keyText, col, delimiters, occurrence, &value);
  // The same limit as the value setter: a value too long to be read back is
  // not replaced either.
  if (index < 0 || !fits(value, kTcfgValueSize)) return -1;
  return replace_in_line(cfg, index, value, newValue);
}

int add_cfg_line(tcfg* cfg, const char* text) {
  if (!cfg || !text) return -1;
  if (cfg->lineCount >= kTcfgMaxLines) {
    fputs("too many lines\n", stderr);
    return -1;
  }
  const size_t length = strlen(text);
  char* line = static_cast<char*>(malloc(length + 1));
  if (!line) {
    perror("malloc error");
    return -1;
  }
  memcpy(line, text, length + 1);
  const int index = cfg->lineCount++;
  free(cfg->owned[index]);
  cfg->owned[index] = line;
  cfg->lines[index] = line;
  return 0;
}

void dump_cfg(tcfg* cfg) {
  if (!cfg) return;
  for (int i = 0; i < cfg->lineCount; ++i) {
    if (cfg->lines[i]) fprintf(stderr, "[%02d] %s\n", i, cfg->lines[i]);
  }
}
