#include "description/hash_tables.hh"

int32_t hash_key(const char *text) {
    int64_t sum = 0;
    for (; *text != '\0'; ++text)
        sum += static_cast<signed char>(*text);
    // Characters above 127 count as negative; the bucket of such a name must exist all the same.
    return static_cast<int32_t>((sum % HASH_BUCKETS + HASH_BUCKETS) % HASH_BUCKETS);
}
