// The driver's way to the board, on the simulated board. `sleep` is replaced by one that notes what
// the expander's lines are meanwhile, so no test sleeps.

#include "platform/board_io.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "vexosim/board.h"

namespace board = vexosim::board;
using board::Op;

namespace {

std::string sleeps;

} // namespace

extern "C" unsigned sleep(unsigned seconds)
{
    sleeps += std::to_string(seconds) + "s with output " +
              std::to_string(board::expander_register(3)) + "\n";
    return 0;
}

namespace {

int open_descriptors()
{
    int count = 0;
    for (int fd = 0; fd < 256; ++fd) {
        count += fcntl(fd, F_GETFD) >= 0 ? 1 : 0;
    }
    return count;
}

void set_expander(unsigned reg, unsigned char value)
{
    ASSERT_EQ(vexo_i2c_write(7, &value, 1, reg), 0);
    board::clear_i2c_log();
}

struct BoardIo : testing::Test {
    BoardIo()
    {
        board::reset();
        board::enable();
    }
};

// Runs an action and gives what it printed; checks that it leaves no descriptor open.
template <typename Action>
std::string printed_by(Action action)
{
    const int before = open_descriptors();
    testing::internal::CaptureStdout();
    action();
    std::string text = testing::internal::GetCapturedStdout();
    EXPECT_EQ(open_descriptors(), before) << "a descriptor was left open";
    return text;
}

TEST_F(BoardIo, ReadGivesTheRegistersFromTheOneAskedFor)
{
    set_expander(2, 0x12);
    set_expander(3, 0x34);
    unsigned char bytes[3] = {0xAA, 0xAA, 0xAA};
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(ReadPCA9555(7, bytes, 2, 2, 99), 0); }), "");
    EXPECT_EQ(bytes[0], 0x12);
    EXPECT_EQ(bytes[1], 0x34);
    EXPECT_EQ(bytes[2], 0xAA);
    EXPECT_EQ(board::i2c_log(), "7 read 2: 12 34\n");
}

TEST_F(BoardIo, WriteSetsTheRegistersFromTheOneAskedFor)
{
    const unsigned char bytes[2] = {0x56, 0x78};
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(vexo_i2c_write(7, bytes, 2, 6), 0); }), "");
    EXPECT_EQ(board::i2c_log(), "7 write 6: 56 78\n");
    EXPECT_EQ(board::expander_register(7), 0x78);
}

struct I2cFault {
    const char* description;
    Op op;
    const char* message;
};

TEST_F(BoardIo, AFailingStepOfAReadPrintsItsLineAndLeavesZeroes)
{
    const I2cFault cases[] = {{"open", Op::open, "/dev/i2cDev Open Error!\n"},
                              {"ioctl", Op::ioctl, "/dev/i2cDev ioctl Error!\n"},
                              {"seek", Op::seek, "/dev/i2cDev seek Error!\n"},
                              {"read", Op::read, "/dev/i2cDev read Error!\n"}};
    for (const I2cFault& fault : cases) {
        board::clear_faults();
        board::fail("/dev/i2cDev", fault.op, EIO);
        unsigned char bytes[3] = {0xAA, 0xAA, 0xAA};
        const auto act = [&] { EXPECT_EQ(ReadPCA9555(7, bytes, 2, 3, 0), -1); };
        EXPECT_EQ(printed_by(act), fault.message) << fault.description;
        EXPECT_EQ(bytes[0] | bytes[1], 0) << fault.description;
        EXPECT_EQ(bytes[2], 0xAA) << fault.description;
    }
    EXPECT_EQ(board::i2c_log(), "");
}

TEST_F(BoardIo, AFailingStepOfAWritePrintsItsLineAndWritesNothing)
{
    const I2cFault cases[] = {{"open", Op::open, "/dev/i2cDev Open Error!\n"},
                              {"ioctl", Op::ioctl, "/dev/i2cDev ioctl Error!\n"},
                              {"seek", Op::seek, "/dev/i2cDev seek Error!\n"},
                              {"write", Op::write, "/dev/i2cDev write Error!\n"}};
    for (const I2cFault& fault : cases) {
        board::clear_faults();
        board::fail("/dev/i2cDev", fault.op, EIO);
        const unsigned char byte = 0x00;
        const auto act = [&] { EXPECT_EQ(vexo_i2c_write(7, &byte, 1, 3), -1); };
        EXPECT_EQ(printed_by(act), fault.message) << fault.description;
    }
    EXPECT_EQ(board::i2c_log(), "");
}

TEST_F(BoardIo, ADeviceThatDoesNotAnswerIsAFailedTransfer)
{
    unsigned char byte = 0xAA;
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(ReadPCA9555(8, &byte, 1, 3, 0), -1); }),
              "/dev/i2cDev read Error!\n");
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(vexo_i2c_write(8, &byte, 1, 3), -1); }),
              "/dev/i2cDev write Error!\n");
}

TEST_F(BoardIo, AReadOfNothingAndOfANegativeLengthTouchNoByte)
{
    unsigned char byte = 0xAA;
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(ReadPCA9555(7, &byte, 0, 3, 0), 0); }), "");
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(ReadPCA9555(7, &byte, -1, 3, 0), -1); }),
              "/dev/i2cDev read Error!\n");
    EXPECT_EQ(byte, 0xAA);
}

TEST_F(BoardIo, WithoutTheNodeAReadFailsToOpen)
{
    board::disable();
    unsigned char byte = 0xAA;
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(ReadPCA9555(7, &byte, 1, 3, 0), -1); }),
              "/dev/i2cDev Open Error!\n");
    EXPECT_EQ(byte, 0);
}

TEST_F(BoardIo, ExpanderSetUpMakesTheSecondPortOutputs)
{
    EXPECT_EQ(BoardInitPCA9555_SFP(7), 0);
    EXPECT_EQ(board::i2c_log(), "7 write 7: 00\n");
    board::fail("/dev/i2cDev", Op::write, EIO);
    EXPECT_EQ(printed_by([] { EXPECT_EQ(BoardInitPCA9555_SFP(7), -1); }),
              "/dev/i2cDev write Error!\n");
}

TEST_F(BoardIo, ExpanderSetUpAndPhyResetAskTheDeviceTheyAreGiven)
{
    EXPECT_EQ(printed_by([] { EXPECT_EQ(BoardInitPCA9555_SFP(8), -1); }),
              "/dev/i2cDev write Error!\n"); // only device 7 answers
    EXPECT_EQ(printed_by([] { EXPECT_EQ(ResetSFPPHYOnBoard(8, 1), -1); }),
              "/dev/i2cDev read Error!\n");
    EXPECT_EQ(board::i2c_log(), "8 write 7: no answer\n8 read 3: no answer\n");
}

TEST_F(BoardIo, PhyResetPullsTheLineLowForASecond)
{
    EXPECT_EQ(ResetSFPPHYOnBoard(7, 1), 0);
    EXPECT_EQ(board::i2c_log(), "7 read 3: ff\n7 write 3: fd\n7 write 3: ff\n");
    EXPECT_EQ(sleeps, "1s with output 253\n");
}

TEST_F(BoardIo, PhyResetKeepsTheOtherLines)
{
    set_expander(3, 0xA1);
    EXPECT_EQ(ResetSFPPHYOnBoard(7, 0), 0);
    EXPECT_EQ(board::i2c_log(), "7 read 3: a1\n7 write 3: a0\n7 write 3: a1\n");
}

TEST_F(BoardIo, PhyResetSetsALineThatWasLow)
{
    set_expander(3, 0x00);
    EXPECT_EQ(ResetSFPPHYOnBoard(7, 7), 0);
    EXPECT_EQ(board::i2c_log(), "7 read 3: 00\n7 write 3: 00\n7 write 3: 80\n");
}

TEST_F(BoardIo, PhyResetCountsBitsModulo64AndTheUpperHalfIsNoLine)
{
    struct Case {
        unsigned char bit;
        const char* low;
    };
    const Case cases[] = {{7, "7f"},   {8, "ff"},   {31, "ff"},  {32, "ff"},  {40, "ff"},
                          {63, "ff"},  {64, "fe"},  {65, "fd"},  {72, "ff"},  {96, "ff"},
                          {127, "ff"}, {128, "fe"}, {199, "7f"}, {224, "ff"}, {255, "ff"}};
    for (const Case& test : cases) {
        board::clear_i2c_log();
        EXPECT_EQ(ResetSFPPHYOnBoard(7, test.bit), 0);
        EXPECT_EQ(board::i2c_log(),
                  std::string("7 read 3: ff\n7 write 3: ") + test.low + "\n7 write 3: ff\n")
            << int{test.bit};
    }
}

TEST_F(BoardIo, PhyResetStopsAtAFailingRead)
{
    board::fail("/dev/i2cDev", Op::read, EIO);
    EXPECT_EQ(printed_by([] { EXPECT_EQ(ResetSFPPHYOnBoard(7, 1), -1); }),
              "/dev/i2cDev read Error!\n");
    EXPECT_EQ(board::i2c_log(), "");
    EXPECT_EQ(sleeps, "");
}

TEST_F(BoardIo, PhyResetStopsAtAFailingFirstWrite)
{
    board::fail("/dev/i2cDev", Op::write, EIO);
    EXPECT_EQ(printed_by([] { EXPECT_EQ(ResetSFPPHYOnBoard(7, 1), -1); }),
              "/dev/i2cDev write Error!\n");
    EXPECT_EQ(board::i2c_log(), "7 read 3: ff\n");
    EXPECT_EQ(sleeps, "");
}

TEST_F(BoardIo, PhyResetReportsAFailingSecondWriteAndLeavesTheLineLow)
{
    board::fail("/dev/i2cDev", Op::write, EIO, 1);
    EXPECT_EQ(printed_by([] { EXPECT_EQ(ResetSFPPHYOnBoard(7, 1), -1); }),
              "/dev/i2cDev write Error!\n");
    EXPECT_EQ(sleeps, "1s with output 253\n");
    EXPECT_EQ(board::expander_register(3), 0xFD);
}

TEST_F(BoardIo, DaughterModuleTypeFollowsTheRegisterField)
{
    const int types[] = {15, 2, 15, 1};
    for (unsigned field = 0; field < 4; ++field) {
        board::select_daughter_module(field);
        const int expected = types[field];
        EXPECT_EQ(printed_by([=] { EXPECT_EQ(DetectDaughterModuleID(), expected); }), "") << field;
    }
}

TEST_F(BoardIo, AWindowThatDoesNotOpenIs255WithALine)
{
    board::set_present("/dev/cpuDev", false);
    EXPECT_EQ(printed_by([] { EXPECT_EQ(DetectDaughterModuleID(), 255); }),
              "/dev/cpuDev Open Error!\n");
}

TEST_F(BoardIo, AWindowThatDoesNotMapIs255WithoutALine)
{
    board::select_daughter_module(1);
    board::fail("/dev/cpuDev", Op::map, ENODEV);
    EXPECT_EQ(printed_by([] { EXPECT_EQ(DetectDaughterModuleID(), 255); }), "");
}

TEST_F(BoardIo, DetectionUnmapsItsWindow)
{
    DetectDaughterModuleID();
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        EXPECT_EQ(line.find("cpuDev"), std::string::npos) << line;
    }
}

std::vector<unsigned char> record_of(std::size_t size)
{
    std::vector<unsigned char> bytes(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<unsigned char>(i + 1);
    }
    return bytes;
}

// Reads card `index` into a record of 0xEE and gives whether it was read and what is in it.
struct CardRead {
    explicit CardRead(int index)
    {
        std::memset(&info, 0xEE, sizeof info);
        printed = printed_by([&] { done = vexo_read_dcard_eeprom(index, &info); });
    }
    bool holds(const std::vector<unsigned char>& bytes) const
    {
        return std::vector(info.bytes, info.bytes + sizeof info.bytes) == bytes;
    }
    bool untouched() const { return holds(std::vector<unsigned char>(71, 0xEE)); }

    fixed_info_s info;
    bool done = false;
    std::string printed;
};

TEST_F(BoardIo, EveryEepromFrom0To6IsReadWhole)
{
    for (int index = 0; index <= 6; ++index) {
        std::vector<unsigned char> bytes = record_of(71);
        bytes[0] = static_cast<unsigned char>(100 + index);
        board::set_eeprom(static_cast<unsigned>(index), bytes);
        const CardRead card(index);
        EXPECT_TRUE(card.done && card.holds(bytes)) << index;
        EXPECT_EQ(card.printed, "");
    }
}

TEST_F(BoardIo, AnEepromThatIsShortMissingOrFailingIsFalseInSilence)
{
    const CardRead missing(0);
    EXPECT_TRUE(!missing.done && missing.untouched() && missing.printed.empty());
    board::set_eeprom(0, record_of(70));
    const CardRead short_by_one(0);
    EXPECT_TRUE(!short_by_one.done && short_by_one.untouched() && short_by_one.printed.empty());
    board::set_eeprom(0, record_of(71));
    board::fail("/dev/wsdcep0", Op::read, EIO);
    const CardRead failing(0);
    EXPECT_TRUE(!failing.done && failing.untouched() && failing.printed.empty());
}

TEST_F(BoardIo, OfALongerEepromTheFirst71BytesAreTheRecord)
{
    board::set_eeprom(5, record_of(200));
    const CardRead card(5);
    EXPECT_TRUE(card.done && card.holds(record_of(71)));
}

// Real files under another prefix, so that what is opened and what is not shows.
struct EepromFiles : BoardIo {
    EepromFiles()
    {
        char name[] = "/tmp/vexoeepromXXXXXX";
        directory = mkdtemp(name);
    }
    ~EepromFiles() override
    {
        for (const std::string& file : files) {
            (void)unlink(file.c_str());
        }
        (void)rmdir(directory.c_str());
    }
    EepromFiles(const EepromFiles&) = delete;
    EepromFiles& operator=(const EepromFiles&) = delete;

    void add(const std::string& path)
    {
        const std::vector<unsigned char> bytes = record_of(71);
        std::ofstream(path).write(reinterpret_cast<const char*>(bytes.data()), 71);
        files.push_back(path);
    }

    std::string directory;
    std::vector<std::string> files;
};

TEST_F(EepromFiles, OnlyAnIndexAboveSixIsRefusedUnopened)
{
    const std::string prefix = directory + "/card";
    for (const char* index : {"-1", "6", "7"}) {
        add(prefix + index);
    }
    dev_wsdcep = prefix.c_str();
    EXPECT_TRUE(CardRead(-1).done);
    EXPECT_TRUE(CardRead(6).done);
    const CardRead seven(7);
    EXPECT_TRUE(!seven.done && seven.untouched());
}

TEST_F(EepromFiles, ThePathIsCutAt63Characters)
{
    const std::string at_62 = directory + "/" + std::string(61 - directory.size(), 'p');
    add(at_62 + "4");
    dev_wsdcep = at_62.c_str();
    EXPECT_TRUE(CardRead(4).done);
    const std::string at_63 = at_62 + "q";
    add(at_63);
    dev_wsdcep = at_63.c_str();
    EXPECT_TRUE(CardRead(4).done);
}

TEST(BoardNames, NodesHaveTheirNames)
{
    EXPECT_STREQ(dev_wsdcep, "/dev/wsdcep");
    EXPECT_STREQ(dev_wspled, "/dev/wspled");
    EXPECT_EQ(sizeof(fixed_info_s), 71U);
}

} // namespace
