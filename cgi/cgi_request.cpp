#include "cgi/cgi_request.h"

#include <stdlib.h>
#include <string.h>

CgiEnvironment gCgi;

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

// The form list, in request order, with duplicates kept.
//
// Every handler looks each of its keys up by name, and a family may have
// hundreds of keys, while a hostile form may carry tens of thousands of
// entries. So each entry is also linked into a bucket by the hash of its
// name, and a lookup costs one short bucket walk instead of a walk of the
// whole list: reading and merging stay linear in the size of the form.
struct FormNode {
  FormEntry entry;
  uint32_t hash;
  FormNode* nextInBucket;
};

constexpr unsigned kBucketCount = 4096;
FormNode* gBuckets[kBucketCount];
FormEntry* gFormHead;
FormEntry* gFormTail;

uint32_t HashName(const char* name) {
  uint32_t h = 2166136261u;  // FNV-1a
  for (const unsigned char* p = reinterpret_cast<const unsigned char*>(name); *p; ++p) {
    h = (h ^ *p) * 16777619u;
  }
  return h;
}

// Buckets hold their newest entry first, so the first occurrence of a name
// is the last match in its bucket.
const FormNode* FindFirst(const char* name) {
  const uint32_t h = HashName(name);
  const FormNode* first = nullptr;
  for (const FormNode* n = gBuckets[h % kBucketCount]; n; n = n->nextInBucket) {
    if (n->hash == h && strcmp(n->entry.name, name) == 0) first = n;
  }
  return first;
}

// Decodes length bytes of urlencoded text into out (length+1 bytes).
void Decode(const char* in, size_t length, char* out) {
  size_t o = 0;
  for (size_t i = 0; i < length; ++i) {
    const unsigned char c = static_cast<unsigned char>(in[i]);
    if (c == '+') {
      out[o++] = ' ';
    } else if (c == '%') {
      if (length - i < 3) break;  // escape cut off by the end of the data
      const unsigned char hi = static_cast<unsigned char>(in[i + 1]);
      const unsigned char lo = static_cast<unsigned char>(in[i + 2]);
      out[o++] = static_cast<char>(kHexDigits.value[hi] * 16 + kHexDigits.value[lo]);
      i += 2;
    } else {
      out[o++] = static_cast<char>(c);
    }
  }
  out[o] = '\0';
}

int AppendEntry(const char* name, size_t nameLength, const char* value, size_t valueLength) {
  // One block: the node, then the decoded name, then the decoded value.
  const size_t size = sizeof(FormNode) + nameLength + 1 + valueLength + 1;
  FormNode* node = static_cast<FormNode*>(malloc(size));
  if (!node) return -1;
  char* text = reinterpret_cast<char*>(node + 1);
  node->entry.name = text;
  node->entry.value = text + nameLength + 1;
  node->entry.next = nullptr;
  Decode(name, nameLength, node->entry.name);
  Decode(value, valueLength, node->entry.value);

  if (gFormTail) {
    gFormTail->next = &node->entry;
  } else {
    gFormHead = &node->entry;
  }
  gFormTail = &node->entry;

  node->hash = HashName(node->entry.name);
  FormNode*& bucket = gBuckets[node->hash % kBucketCount];
  node->nextInBucket = bucket;
  bucket = node;
  return 0;
}

// Case-insensitive for letters, exact for other bytes, whole strings.
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

const char* EnvOrEmpty(const char* name) {
  const char* v = getenv(name);
  return v ? v : "";
}

bool IsCSpace(unsigned char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

int ReadPostBody() {
  if (!EqualsIgnoringCase(gCgi.contentType, "application/x-www-form-urlencoded")) return 0;
  if (gCgi.contentLength == 0) return 0;
  if (gCgi.contentLength < 0 || gCgi.contentLength > kMaxContentLength) return -1;
  const size_t length = static_cast<size_t>(gCgi.contentLength);
  char* body = static_cast<char*>(malloc(length));
  if (!body) return -1;
  const size_t got = fread(body, 1, length, gCgi.in);
  const int result = got == length ? ParseUrlEncodedForm(body, length) : -1;
  free(body);
  return result;
}

}  // namespace

int ParseUrlEncodedForm(const char* data, size_t length) {
  size_t pos = 0;
  while (pos < length) {
    const char* eq = static_cast<const char*>(memchr(data + pos, '=', length - pos));
    if (!eq) return 0;
    const size_t nameStart = pos;
    const size_t nameEnd = static_cast<size_t>(eq - data);
    const size_t valueStart = nameEnd + 1;
    const char* amp = static_cast<const char*>(memchr(data + valueStart, '&', length - valueStart));
    const size_t valueEnd = amp ? static_cast<size_t>(amp - data) : length;
    if (AppendEntry(data + nameStart, nameEnd - nameStart, data + valueStart,
                    valueEnd - valueStart) != 0) {
      return -1;
    }
    if (!amp) return 0;
    pos = valueEnd + 1;
  }
  return 0;
}

int ReadCgiRequest() {
  gCgi.serverSoftware = EnvOrEmpty("SERVER_SOFTWARE");
  gCgi.serverName = EnvOrEmpty("SERVER_NAME");
  gCgi.gatewayInterface = EnvOrEmpty("GATEWAY_INTERFACE");
  gCgi.serverProtocol = EnvOrEmpty("SERVER_PROTOCOL");
  gCgi.serverPort = EnvOrEmpty("SERVER_PORT");
  gCgi.requestMethod = EnvOrEmpty("REQUEST_METHOD");
  gCgi.pathInfo = EnvOrEmpty("PATH_INFO");
  gCgi.pathTranslated = EnvOrEmpty("PATH_TRANSLATED");
  gCgi.scriptName = EnvOrEmpty("SCRIPT_NAME");
  gCgi.queryString = EnvOrEmpty("QUERY_STRING");
  gCgi.remoteHost = EnvOrEmpty("REMOTE_HOST");
  gCgi.remoteAddr = EnvOrEmpty("REMOTE_ADDR");
  gCgi.authType = EnvOrEmpty("AUTH_TYPE");
  gCgi.remoteUser = EnvOrEmpty("REMOTE_USER");
  gCgi.remoteIdent = EnvOrEmpty("REMOTE_IDENT");
  gCgi.contentType = EnvOrEmpty("CONTENT_TYPE");
  gCgi.contentLength = DecimalToInt32(EnvOrEmpty("CONTENT_LENGTH"), nullptr);
  gCgi.httpAccept = EnvOrEmpty("HTTP_ACCEPT");
  gCgi.httpUserAgent = EnvOrEmpty("HTTP_USER_AGENT");
  gCgi.httpReferer = EnvOrEmpty("HTTP_REFERER");
  gCgi.out = stdout;
  gCgi.in = stdin;

  if (EqualsIgnoringCase(gCgi.requestMethod, "post")) return ReadPostBody();
  if (EqualsIgnoringCase(gCgi.requestMethod, "get")) {
    const size_t length = strlen(gCgi.queryString);
    gCgi.contentLength = length > INT32_MAX ? INT32_MAX : static_cast<int32_t>(length);
    return ParseUrlEncodedForm(gCgi.queryString, length);
  }
  return 0;
}

int FormLookup(const char* key, char* buffer, int max) {
  const FormNode* node = FindFirst(key);
  if (!node) {
    if (max > 0) buffer[0] = '\0';
    return LookupNotFound;
  }
  if (max <= 0) return LookupTruncated;
  int copied = 0;
  for (const char* p = node->entry.value; *p; ++p) {
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
  if (negative) return magnitude >= INT64_C(2147483648) ? INT32_MIN : static_cast<int32_t>(-magnitude);
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

void FreeForm() {
  for (FormEntry* e = gFormHead; e;) {
    FormEntry* next = e->next;
    // The entry is the first member of its node, and the node is the block.
    free(reinterpret_cast<FormNode*>(e));
    e = next;
  }
  gFormHead = gFormTail = nullptr;
  memset(gBuckets, 0, sizeof gBuckets);
}

const FormEntry* FormEntries() { return gFormHead; }
