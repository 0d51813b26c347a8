#include "devices/uinput_device.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/uinput.h>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>

#include "devices/virtual_identity.h"

namespace tamsel {

namespace {

constexpr std::size_t roomForEvents = 256;

tl::unexpected<Error> uinputError(const char* what) {
    return fail(std::string("a virtual device cannot be ") + what + ": " +
                std::generic_category().message(errno));
}

/// The request that declares a code of this type; 0 for a type without one.
unsigned long declaringRequest(std::uint16_t type) {
    switch (type) {
    case EV_KEY:
        return UI_SET_KEYBIT;
    case EV_REL:
        return UI_SET_RELBIT;
    case EV_MSC:
        return UI_SET_MSCBIT;
    case EV_LED:
        return UI_SET_LEDBIT;
    default:
        return 0;
    }
}

bool declare(int fd, const VirtualRecipe& recipe) {
    const auto set = [fd](unsigned long request, int value) {
        return ::ioctl(fd, request, value) == 0;
    };
    bool isDone = !recipe.hasRepeat || set(UI_SET_EVBIT, EV_REP);
    for (const auto& [type, code] : recipe.codes)
        isDone = isDone && set(UI_SET_EVBIT, type) && set(declaringRequest(type), code);
    for (const VirtualRecipe::Axis& axis : recipe.axes) {
        uinput_abs_setup setup{};
        setup.code = axis.code;
        setup.absinfo = axis.range;
        isDone = isDone && set(UI_SET_EVBIT, EV_ABS) && ::ioctl(fd, UI_ABS_SETUP, &setup) == 0;
    }
    for (const std::uint16_t property : recipe.properties)
        isDone = isDone && set(UI_SET_PROPBIT, property);
    return isDone;
}

bool create(int fd, const VirtualRecipe& recipe) {
    uinput_setup setup{};
    setup.id = recipe.id;
    std::strncpy(static_cast<char*>(setup.name), recipe.name.c_str(), sizeof setup.name - 1);
    return ::ioctl(fd, UI_SET_PHYS, virtual_identity::phys.data()) == 0 &&
           ::ioctl(fd, UI_DEV_SETUP, &setup) == 0 && ::ioctl(fd, UI_DEV_CREATE) == 0;
}

void append(VirtualRecipe& recipe, std::uint16_t type, std::initializer_list<std::uint16_t> codes) {
    for (const std::uint16_t code : codes)
        recipe.codes.emplace_back(type, code);
}

} // namespace

bool VirtualRecipe::has(std::uint16_t type, std::uint16_t code) const {
    if (type == EV_ABS)
        return std::any_of(axes.begin(), axes.end(),
                           [code](const Axis& axis) { return axis.code == code; });
    return std::find(codes.begin(), codes.end(), std::pair(type, code)) != codes.end();
}

VirtualRecipe keyboardRecipe(KeyboardPlace place) {
    VirtualRecipe recipe;
    const bool isBuiltIn = place == KeyboardPlace::builtIn;
    recipe.name =
        isBuiltIn ? virtual_identity::builtInKeyboardName : virtual_identity::keyboardName;
    recipe.id = {static_cast<__u16>(isBuiltIn ? BUS_I8042 : BUS_VIRTUAL), virtual_identity::vendor,
                 isBuiltIn ? virtual_identity::builtInKeyboardProduct
                           : virtual_identity::keyboardProduct,
                 1};
    recipe.hasRepeat = true;
    for (std::uint16_t code = KEY_ESC; code < KEY_CNT; ++code) {
        const char* const name = ::libevdev_event_code_get_name(EV_KEY, code);
        if (name && std::strncmp(name, "KEY_", 4) == 0)
            recipe.codes.emplace_back(EV_KEY, code);
    }
    append(recipe, EV_LED, {LED_NUML, LED_CAPSL, LED_SCROLLL, LED_COMPOSE, LED_KANA});
    append(recipe, EV_MSC, {MSC_SERIAL, MSC_PULSELED, MSC_GESTURE, MSC_RAW});
    return recipe;
}

VirtualRecipe pointerRecipe() {
    VirtualRecipe recipe;
    recipe.name = virtual_identity::pointerName;
    recipe.id = {BUS_VIRTUAL, virtual_identity::vendor, virtual_identity::pointerProduct, 1};
    constexpr std::uint16_t buttons = 16;
    for (std::uint16_t button = 0; button < buttons; ++button)
        recipe.codes.emplace_back(EV_KEY, static_cast<std::uint16_t>(BTN_MOUSE + button));
    append(recipe, EV_REL, {REL_X, REL_Y, REL_WHEEL, REL_HWHEEL});
    return recipe;
}

VirtualRecipe cloneRecipe(const libevdev* source) {
    VirtualRecipe recipe;
    recipe.name = ::libevdev_get_name(source);
    recipe.id = {static_cast<__u16>(::libevdev_get_id_bustype(source)),
                 static_cast<__u16>(::libevdev_get_id_vendor(source)),
                 static_cast<__u16>(::libevdev_get_id_product(source)),
                 static_cast<__u16>(::libevdev_get_id_version(source))};
    const auto has = [source](unsigned type, unsigned code) {
        return ::libevdev_has_event_code(source, type, code) == 1;
    };
    for (std::uint16_t code = 0; code < REL_CNT; ++code) {
        if (has(EV_REL, code))
            recipe.codes.emplace_back(EV_REL, code);
    }
    for (std::uint16_t code = BTN_MISC; code < BTN_JOYSTICK; ++code) {
        if (has(EV_KEY, code))
            recipe.codes.emplace_back(EV_KEY, code);
    }
    for (std::uint16_t code = 0; code < ABS_CNT; ++code) {
        if (has(EV_ABS, code))
            recipe.axes.push_back({code, *::libevdev_get_abs_info(source, code)});
    }
    for (std::uint16_t property = 0; property < INPUT_PROP_CNT; ++property) {
        if (::libevdev_has_property(source, property) == 1)
            recipe.properties.push_back(property);
    }
    return recipe;
}

Result<UinputDevice> UinputDevice::make(const VirtualRecipe& recipe) {
    UniqueFd fd(::open("/dev/uinput", O_RDWR | O_NONBLOCK | O_CLOEXEC));
    if (!fd.isOpen())
        return uinputError("opened");
    if (!declare(fd.get(), recipe))
        return uinputError("described");
    if (!create(fd.get(), recipe))
        return uinputError("made");
    std::array<char, 64> name{};
    if (::ioctl(fd.get(), UI_GET_SYSNAME(name.size()), name.data()) < 0)
        return uinputError("found");
    UinputDevice device(std::move(fd), recipe);
    device.m_inputName = name.data();
    device.m_frame.reserve(roomForEvents);
    return device;
}

void UinputDevice::add(std::uint16_t type, std::uint16_t code, std::int32_t value) {
    const auto isSame = [&](const input_event& event) {
        return event.type == EV_KEY && event.code == code;
    };
    if (type == EV_KEY && std::any_of(m_frame.begin() + static_cast<std::ptrdiff_t>(m_frameBegin),
                                      m_frame.end(), isSame)) {
        m_frame.push_back({});
        m_frameBegin = m_frame.size();
    }
    input_event event{};
    event.type = type;
    event.code = code;
    event.value = value;
    m_frame.push_back(event);
}

Result<void> UinputDevice::sync() {
    if (m_frame.empty())
        return {};
    m_frame.push_back({}); // SYN_REPORT is all zeros
    const auto* bytes = reinterpret_cast<const char*>(m_frame.data());
    std::size_t size = m_frame.size() * sizeof(input_event);
    while (size > 0) {
        const ssize_t count = ::write(m_fd.get(), bytes, size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0) {
            m_frame.clear();
            m_frameBegin = 0;
            return uinputError("written");
        }
        bytes += count;
        size -= static_cast<std::size_t>(count);
    }
    m_frame.clear();
    m_frameBegin = 0;
    return {};
}

} // namespace tamsel
