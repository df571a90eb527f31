#include "sim/board/board_state.h"

#include <pthread.h>

namespace vexoboard {

constinit std::atomic<bool> serving{false};

namespace {

constinit std::mutex board_mutex;

void lock_board()
{
    board_mutex.lock();
}

void unlock_board()
{
    board_mutex.unlock();
}

// Never destroyed: descriptors may still be used while the process exits.
BoardState& board_state()
{
    static BoardState& state = []() -> BoardState& {
        pthread_atfork(lock_board, unlock_board, unlock_board);
        return *new BoardState;
    }();
    return state;
}

} // namespace

int Fault::take()
{
    if (error != 0 && skip > 0) {
        --skip;
        return 0;
    }
    return error;
}

// The state is made before the lock is taken, so that its fork handlers see every locking.
LockedBoard::LockedBoard() : state_(board_state())
{
    lock_ = std::unique_lock(board_mutex);
}

} // namespace vexoboard
