#include "cgi/cgi_request.h"

#include <stdlib.h>
#include <string.h>
#include <sys/auxv.h>
#include <sys/random.h>
#include <unistd.h>

namespace {

// Hex-digit values by byte; every byte that is not a hex digit is 0.
struct HexDigitTable {
  uint8_t value[256];
  constexpr HexDigitTable() : value{} {
    for (int c = '0'; c <= '9'; ++c) value[c] = static_cast<uint8_t>(c - '0');
    for (int c = 'a'; c <= 'f'; ++c) value[c] = static_cast<uint8_t>(c - 'a' + 10);
    for (int c = 'A'; c <= 'F'; ++c) value[c] = static_cast<uint8_t>(c - 'A' + 10);
  }
};
constexpr HexDigitTable kHexDigits;

// A form of at most kFewEntries entries is indexed in a small table under
// a cheap hash: names chosen to share a slot cost at most that many
// compares each. In a larger form they could make every insert a walk of
// the whole index, so its slots must not be predictable from outside: the
// hash is HalfSipHash-1-3 under a key the kernel gives each process.
constexpr uint32_t kFewEntries = 32;
constexpr uint32_t kFewSlots = 128;

// Never waits for the kernel's pool, which early in boot may not be ready.
// Without it, the key is taken from the random bytes the kernel gives each
// process at exec, where the C library leaves some free (on 32-bit it takes
// bytes 0 to 7 for the stack and pointer guards, on 64-bit all 16), else
// from the process id and the stack's address.
void LoadHashKey(uint32_t key[2]) {
  if (getrandom(key, 8, GRND_NONBLOCK) == 8) return;
  key[0] = static_cast<uint32_t>(getpid()) * 2654435761u;
  key[1] = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(&key));
#if UINTPTR_MAX == UINT32_MAX
  const unsigned char* random =
      reinterpret_cast<const unsigned char*>(static_cast<uintptr_t>(getauxval(AT_RANDOM)));
  if (random) memcpy(key, random + 8, 8);
#endif
}

constexpr uint32_t Rotl(uint32_t x, int b) { return (x << b) | (x >> (32 - b)); }

struct SipState {
  uint32_t v0, v1, v2, v3;
  void Round() {
    v0 += v1, v1 = Rotl(v1, 5), v1 ^= v0, v0 = Rotl(v0, 16);
    v2 += v3, v3 = Rotl(v3, 8), v3 ^= v2;
    v0 += v3, v3 = Rotl(v3, 7), v3 ^= v0;
    v2 += v1, v1 = Rotl(v1, 13), v1 ^= v2, v2 = Rotl(v2, 16);
  }
  void Absorb(uint32_t m) {
    v3 ^= m;
    Round();
    v0 ^= m;
  }
};

// Multiplies whole words in (the last one may overlap the one before it):
// a few instructions a name.
uint32_t FewEntriesHash(const char* name) {
  const size_t length = strlen(name);
  uint32_t h = static_cast<uint32_t>(length), word = 0;
  if (length < 4) {
    for (size_t i = 0; i < length; ++i) word = word << 8 | static_cast<unsigned char>(name[i]);
  } else {
    for (size_t i = 0; i + 4 < length; i += 4) {
      memcpy(&word, name + i, 4);
      h = (h ^ word) * 0x9e3779b1u;
    }
    memcpy(&word, name + length - 4, 4);
  }
  h = (h ^ word) * 0x9e3779b1u;
  return h ^ h >> 16;
}

uint32_t HashName(const Form& form, const char* name) {
  if (form.slots <= kFewSlots) return FewEntriesHash(name);
  const unsigned char* p = reinterpret_cast<const unsigned char*>(name);
  const uint32_t* k = form.key;
  SipState s = {k[0], k[1], 0x6c796765u ^ k[0], 0x74656462u ^ k[1]};
  uint32_t length = 0;
  for (; p[0] && p[1] && p[2] && p[3]; p += 4, length += 4)
    s.Absorb(p[0] | p[1] << 8 | p[2] << 16 | static_cast<uint32_t>(p[3]) << 24);
  uint32_t last = 0;
  for (int shift = 0; *p; ++p, ++length, shift += 8) last |= static_cast<uint32_t>(*p) << shift;
  s.Absorb(last | length << 24);
  s.v2 ^= 0xff;
  s.Round();
  s.Round();
  s.Round();
  return s.v1 ^ s.v3;
}

// The slot that holds name, or the free slot where it would go.
uint32_t* Slot(const Form& form, const char* name, uint32_t hash) {
  for (uint32_t i = hash & (form.slots - 1);; i = (i + 1) & (form.slots - 1)) {
    uint32_t* slot = &form.index[i];
    if (*slot == 0 || strcmp(form.text + *slot - 1, name) == 0) return slot;
  }
}

// Makes the index at least `slots` large (a power of two), rehashing.
bool GrowIndex(Form& form, uint32_t slots) {
  if (slots <= form.slots) return true;
  if (slots > kFewSlots && form.slots <= kFewSlots) LoadHashKey(form.key);
  uint32_t* index = static_cast<uint32_t*>(calloc(slots, sizeof *index));
  if (!index) return false;
  uint32_t* old = form.index;
  const uint32_t oldSlots = form.slots;
  form.index = index;
  form.slots = slots;
  for (uint32_t i = 0; i < oldSlots; ++i) {
    if (old[i])
      *Slot(form, form.text + old[i] - 1, HashName(form, form.text + old[i] - 1)) = old[i];
  }
  free(old);
  return true;
}

// The index is kept at most seven-eighths full. It is sized once for the
// names a form can bring, so that it never holds two tables at once: a
// 1 MiB body has at most about 223,000 distinct names (one empty, 256 of
// one byte, 65,536 of two, the rest longer), which 262,144 slots (1 MiB)
// hold. A form can have more entries than that only by repeating names.
constexpr uint32_t kIndexSlotsForLargestForm = 262144;
bool IndexRoomFor(Form& form, uint32_t names) {
  if (form.slots <= kFewSlots && names <= kFewEntries) return GrowIndex(form, kFewSlots);
  uint32_t slots = form.slots > kFewSlots ? form.slots : 1024;
  while (slots < kIndexSlotsForLargestForm && names * 8ull > slots * 7ull) slots *= 2;
  while (names * 8ull > slots * 7ull) slots *= 2;  // only forms larger than the body limit
  return GrowIndex(form, slots);
}

// Room for length more raw bytes and the terminator the last value needs.
char* Reserve(Form& form, size_t length) {
  if (length > UINT32_MAX - 2 - form.used) return nullptr;
  const uint32_t need = form.used + static_cast<uint32_t>(length) + 2;
  if (need > form.capacity) {
    char* text = static_cast<char*>(realloc(form.text, need));
    if (!text) return nullptr;
    form.text = text;
    form.capacity = need;
  }
  return form.text + form.used;
}

// Decodes in[0..length) to out, which may be in itself (the text never
// grows). A decoded NUL ends the string; the rest of the span is skipped.
// Returns the end of the output, its NUL written.
char* Decode(const char* in, size_t length, char* out) {
  bool ended = false;
  for (size_t i = 0; i < length; ++i) {
    unsigned char c = static_cast<unsigned char>(in[i]);
    if (c == '+') {
      c = ' ';
    } else if (c == '%') {
      if (length - i < 3) break;  // escape cut off by the end of the data
      c = static_cast<unsigned char>(kHexDigits.value[static_cast<unsigned char>(in[i + 1])] * 16 +
                                     kHexDigits.value[static_cast<unsigned char>(in[i + 2])]);
      i += 2;
    }
    ended = ended || c == '\0';
    if (!ended) *out++ = static_cast<char>(c);
  }
  *out = '\0';
  return out;
}

// Parses the raw bytes just reserved at the end of the text, in place.
int ParseReserved(Form& form, size_t length) {
  char* const data = form.text + form.used;
  char* out = data;
  size_t pos = 0;
  // Every entry has its "=": their count bounds the names to come.
  uint32_t entries = 0;
  for (const char* p = data;
       (p = static_cast<const char*>(memchr(p, '=', length - (p - data)))) != nullptr;
       ++p)
    ++entries;
  const uint32_t capped =
      entries < kIndexSlotsForLargestForm / 8 * 7 ? entries : kIndexSlotsForLargestForm / 8 * 7;
  if (!IndexRoomFor(form, form.names + capped)) return -1;
  while (pos < length) {
    const char* eq = static_cast<const char*>(memchr(data + pos, '=', length - pos));
    if (!eq) break;
    const size_t nameEnd = static_cast<size_t>(eq - data);
    const size_t valueStart = nameEnd + 1;
    const char* amp = static_cast<const char*>(memchr(data + valueStart, '&', length - valueStart));
    const size_t valueEnd = amp ? static_cast<size_t>(amp - data) : length;
    // The value is read from its place before the name's bytes move over it:
    // the decoded name ends before the raw value starts.
    char* name = out;
    out = Decode(data + pos, nameEnd - pos, out) + 1;
    out = Decode(data + valueStart, valueEnd - valueStart, out) + 1;
    if (!IndexRoomFor(form, form.names + 1)) return -1;
    const uint32_t offset = static_cast<uint32_t>(name - form.text) + 1;
    uint32_t* slot = Slot(form, name, HashName(form, name));
    if (*slot == 0) {
      *slot = offset;
      ++form.names;
    }
    if (!amp) break;
    pos = valueEnd + 1;
  }
  form.used = static_cast<uint32_t>(out - form.text);
  return 0;
}

const char* EnvOrEmpty(const char* name) {
  const char* v = getenv(name);
  return v ? v : "";
}

bool IsCSpace(unsigned char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// The form type, alone or with parameters ("; charset=UTF-8", as fetch()
// sends it).
bool IsFormContentType(const char* type) {
  static const char kForm[] = "application/x-www-form-urlencoded";
  const size_t n = sizeof kForm - 1;
  if (strlen(type) < n) return false;
  char head[sizeof kForm];
  memcpy(head, type, n);
  head[n] = '\0';
  if (!EqualsIgnoringCase(head, kForm)) return false;
  const char* rest = type + n + strspn(type + n, " \t");
  return type[n] == '\0' || *rest == ';';
}

int ReadPostBody(const CgiEnvironment& env, Form& form) {
  if (!IsFormContentType(env.contentType)) return 0;
  if (env.contentLength == 0) return 0;
  if (env.contentLength < 0 || env.contentLength > kMaxContentLength) return -1;
  const size_t length = static_cast<size_t>(env.contentLength);
  // The body is read straight into the form's text and parsed there.
  char* body = Reserve(form, length);
  if (!body || fread(body, 1, length, env.in) != length) return -1;
  return ParseReserved(form, length);
}

}  // namespace

int ParseUrlEncodedForm(Form& form, const char* data, size_t length) {
  char* raw = Reserve(form, length);
  if (!raw) return -1;
  if (length > 0) memcpy(raw, data, length);
  return ParseReserved(form, length);
}

bool EqualsIgnoringCase(const char* a, const char* b) {
  for (;; ++a, ++b) {
    unsigned char ca = static_cast<unsigned char>(*a);
    unsigned char cb = static_cast<unsigned char>(*b);
    if (ca >= 'A' && ca <= 'Z') ca = static_cast<unsigned char>(ca - 'A' + 'a');
    if (cb >= 'A' && cb <= 'Z') cb = static_cast<unsigned char>(cb - 'A' + 'a');
    if (ca != cb) return false;
    if (ca == '\0') return true;
  }
}

void ReadCgiEnvironment(Request& request) {
  CgiEnvironment& env = request.cgi;
  env.requestMethod = EnvOrEmpty("REQUEST_METHOD");
  env.queryString = EnvOrEmpty("QUERY_STRING");
  env.contentType = EnvOrEmpty("CONTENT_TYPE");
  env.contentLength = DecimalToInt32(EnvOrEmpty("CONTENT_LENGTH"), nullptr);
  env.secFetchSite = getenv("HTTP_SEC_FETCH_SITE");
  env.origin = getenv("HTTP_ORIGIN");
  env.referer = getenv("HTTP_REFERER");
  env.host = getenv("HTTP_HOST");
  env.out = stdout;
  env.in = stdin;
}

int ReadCgiForm(Request& request) {
  CgiEnvironment& env = request.cgi;
  if (EqualsIgnoringCase(env.requestMethod, "post")) return ReadPostBody(env, request.form);
  if (EqualsIgnoringCase(env.requestMethod, "get")) {
    const size_t length = strlen(env.queryString);
    env.contentLength = length > INT32_MAX ? INT32_MAX : static_cast<int32_t>(length);
    return ParseUrlEncodedForm(request.form, env.queryString, length);
  }
  return 0;
}

int FormLookup(const Form& form, const char* key, char* buffer, int max) {
  const uint32_t offset = form.slots ? *Slot(form, key, HashName(form, key)) : 0;
  if (offset == 0) {
    if (max > 0) buffer[0] = '\0';
    return LookupNotFound;
  }
  if (max <= 0) return LookupTruncated;
  int copied = 0;
  for (const char* p = FormEntryValue(form.text + offset - 1); *p; ++p) {
    if (*p == '\r' || *p == '\n') continue;
    if (copied == max - 1) {
      buffer[copied] = '\0';
      return LookupTruncated;
    }
    buffer[copied++] = *p;
  }
  buffer[copied] = '\0';
  return copied == 0 ? LookupEmpty : LookupOk;
}

int32_t DecimalToInt32(const char* text, const char** end) {
  const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
  while (IsCSpace(*p)) ++p;
  bool negative = false;
  if (*p == '+' || *p == '-') negative = *p++ == '-';
  const unsigned char* digits = p;
  // Magnitudes beyond 2^31 all saturate, so 64 bits cannot overflow here.
  int64_t magnitude = 0;
  for (; *p >= '0' && *p <= '9'; ++p) {
    if (magnitude <= INT64_C(2147483648)) magnitude = magnitude * 10 + (*p - '0');
  }
  if (end) *end = p == digits ? text : reinterpret_cast<const char*>(p);
  if (negative)
    return magnitude >= INT64_C(2147483648) ? INT32_MIN : static_cast<int32_t>(-magnitude);
  return magnitude > INT32_MAX ? INT32_MAX : static_cast<int32_t>(magnitude);
}

uint32_t DecimalToUInt32(const char* text) {
  const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
  while (IsCSpace(*p)) ++p;
  bool negative = false;
  if (*p == '+' || *p == '-') negative = *p++ == '-';
  uint64_t magnitude = 0;
  for (; *p >= '0' && *p <= '9'; ++p) {
    if (magnitude <= UINT32_MAX) magnitude = magnitude * 10 + (*p - '0');
  }
  if (magnitude > UINT32_MAX) return UINT32_MAX;
  const uint32_t value = static_cast<uint32_t>(magnitude);
  return negative ? 0u - value : value;
}

int32_t FormValueToInt(const char* text) {
  if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
    const char* p = text + 2;
    if (p[0] == '0' && (p[1] == 'x' || p[1] == 'X')) p += 2;
    uint32_t value = 0;
    for (;; ++p) {
      const unsigned char c = static_cast<unsigned char>(*p);
      const bool digit = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
      if (!digit) break;
      value = value * 16u + kHexDigits.value[c];
    }
    return static_cast<int32_t>(value);
  }
  return DecimalToInt32(text, nullptr);
}

void FreeForm(Form& form) {
  free(form.text);
  free(form.index);
  form = {};
}

const char* NextFormEntry(const Form& form, const char* name) {
  const char* next = name ? FormEntryValue(name) + strlen(FormEntryValue(name)) + 1 : form.text;
  return next && next < form.text + form.used ? next : nullptr;
}
