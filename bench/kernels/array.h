/* The arrays of a Work, as the records that a library reads. */
#ifndef BENCH_ARRAY_H
#define BENCH_ARRAY_H

namespace
{

template <typename Record>
const Record *array(const void *address)
{
    return static_cast<const Record *>(address);
}

template <typename Record>
Record *array(void *address)
{
    return static_cast<Record *>(address);
}

} // namespace

#endif
