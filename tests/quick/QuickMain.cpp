// The views need an application object for their whole run; Qt's offscreen
// platform draws them without a display.
#include <QApplication>
#include <gtest/gtest.h>

namespace {

// Our views are deleted on a later turn of the event loop, which a test may
// never reach: each test's views go when it ends, as the program's go when
// its loop does, so that a view left over is not counted as a leak.
class DeleteLaterViews : public ::testing::EmptyTestEventListener {
    void OnTestEnd(const ::testing::TestInfo&) override {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QSG_RENDER_LOOP", "basic");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::UnitTest::GetInstance()->listeners().Append(new DeleteLaterViews);
    return RUN_ALL_TESTS();
}
