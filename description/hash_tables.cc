#include "description/hash_tables.hh"

int32_t hash_key(const char *text) {
    int32_t sum = 0;
    for (; *text != '\0'; ++text)
        sum = (sum + static_cast<signed char>(*text)) % HASH_BUCKETS;
    // Characters above 127 count as negative; the bucket of such a name must exist all the same.
    return (sum + HASH_BUCKETS) % HASH_BUCKETS;
}
