// ZuUrlBuf reading and seeking: underflow, and seeks served from the history.
#include <zu/url.h>

bool ZuUrlBuf::fillTo(long long target) {
    while (_historyCount < target)
        if (fillbuf() < 0)
            return false;
    return true;
}

ZuUrlBuf::int_type ZuUrlBuf::underflow() {
    if (gptr() && gptr() < egptr())
        return traits_type::to_int_type(*gptr());
    if (fillbuf() < 0) {
        setg(nullptr, nullptr, nullptr);
        return traits_type::eof();
    }
    return traits_type::to_int_type(*gptr());
}

ZuUrlBuf::pos_type ZuUrlBuf::seekoff(off_type off, std::ios_base::seekdir dir,
                                     std::ios_base::openmode /*mode*/) {
    const pos_type failed(off_type(-1));
    // Without history there is nothing to seek in.
    if (_hints & ZuIUrlStream::NoHistory)
        return failed;
    // Where reading stands: in the history, or at its end once the get area was cleared.
    const long long current = (_history && eback() == _history)
                                  ? gptr() - eback()
                                  : static_cast<long long>(_historyCount);
    long long position;
    if (dir == std::ios_base::beg) {
        if (off < 0)
            return failed;
        fillTo(off);
        position = off;
    } else if (dir == std::ios_base::cur) {
        if (__builtin_add_overflow(current, static_cast<long long>(off), &position) || position < 0)
            return failed;
        if (off > 0)
            fillTo(position);
    } else if (dir == std::ios_base::end) {
        if (off > 0)
            return failed;
        position = _historyCount; // the end of what has been read, not of the resource
    } else {
        return failed;
    }
    // A target past the end of the input stops at the end rather than outside the history.
    if (position > _historyCount)
        position = _historyCount;
    if (_history)
        setg(_history, _history + position, _history + _historyCount);
    else
        setg(nullptr, nullptr, nullptr);
    long long reported;
    if (__builtin_add_overflow(position, static_cast<long long>(off), &reported))
        return failed;
    // Deliberately the new position plus off again: a seek to 10 reports 20.
    return pos_type(off_type(reported));
}

ZuUrlBuf::pos_type ZuUrlBuf::seekpos(pos_type pos, std::ios_base::openmode /*mode*/) {
    return seekoff(off_type(pos), std::ios_base::beg, std::ios_base::in | std::ios_base::out);
}
