"""What a change of the address keeps: the other addresses, the routes, and everything that belongs to them."""

import pytest

from test_tcpip import set_ipv4, set_ipv6, settings

PROMOTIONS = ["0", "1"]
LIFETIMES = ("valid_life_time", "preferred_life_time")
LIFETIME_SLACK = 5  # seconds
MOST_NEXT_HOPS = 253  # that ip can add; with all else that is said of the route, that is more than a page


def told(machine, family, name="va"):
    """All that ip tells of the addresses, without what the kernel makes up itself."""
    return [entry for entry in machine.ip(family, "addr", "show", "dev", name)[0]["addr_info"]
            if entry["scope"] != "link" and not entry.get("temporary")]


def assert_same_addresses(now, before):
    def others(entry):
        return {key: value for key, value in entry.items() if key not in LIFETIMES}
    assert [others(entry) for entry in now] == [others(entry) for entry in before]
    for one, other in zip(now, before, strict=True):
        for key in LIFETIMES:
            assert abs(one[key] - other[key]) <= LIFETIME_SLACK, (one, other)


def address_of(entry):
    return entry["local"]


def order_of_those_for_good(entries):
    return [address_of(entry) for entry in entries if not entry.get("dynamic")]


def routes(machine, family, *which):
    """All routes that somebody made, in every table."""
    return sorted((sorted((key, str(value)) for key, value in route.items() if key not in ("expires", "flags"))
                   for route in machine.ip(family, "route", "show", "table", "all", *which)
                   if route.get("protocol") != "kernel"), key=str)


def set_promotion(machine, value):
    for name in ("all", "va"):
        machine.do("sysctl", "-w", f"net.ipv4.conf.{name}.promote_secondaries={value}")


@pytest.mark.parametrize("promotion", PROMOTIONS)
@pytest.mark.parametrize("others", [["203.0.113.5/24"], ["203.0.113.5/24", "192.0.2.11/24"], ["192.0.2.11/24"]])
def test_the_new_address_is_the_one_that_is_shown(machine, promotion, others):
    mac = machine.add_pair()
    set_promotion(machine, promotion)
    for address in ["192.0.2.10/24", *others]:
        machine.do("ip", "addr", "add", address, "dev", "va")
    wanted = sorted(["192.0.2.20/24", *others])
    for _ in range(2):
        assert settings_after(machine, mac, "192.0.2.20")["address"] == "192.0.2.20"
        assert sorted(f"{address}/{length}" for address, length in machine.global_addresses("va", "-4")) == wanted


def settings_after(machine, mac, address):
    set_ipv4(machine, mac, address, "255.255.255.0", "0.0.0.0")
    return settings(machine, mac)


@pytest.mark.parametrize("promotion", PROMOTIONS)
@pytest.mark.parametrize("wanted", ["192.0.2.11", "203.0.113.5"])
def test_an_address_that_is_there_is_shown_and_none_goes_for_it(machine, promotion, wanted):
    mac = machine.add_pair()
    set_promotion(machine, promotion)
    addresses = ["192.0.2.10", "192.0.2.11", "203.0.113.5", "203.0.113.6"]
    for address in addresses:
        machine.do("ip", "addr", "add", f"{address}/24", "dev", "va", "label", "va:" + address[-1])
    before = {entry["local"]: entry["label"] for entry in told(machine, "-4")}
    for _ in range(2):
        assert settings_after(machine, mac, wanted)["address"] == wanted
        assert {entry["local"]: entry["label"] for entry in told(machine, "-4")} == before


def test_an_ipv6_address_that_is_there_is_shown_and_none_goes_for_it(machine):
    mac = machine.add_pair()
    for last in (1, 2, 3):
        machine.do("ip", "-6", "addr", "add", f"2001:db8::{last}/64", "dev", "va", "nodad")
    for wanted in ("2001:db8::1", "2001:db8::2"):
        set_ipv6(machine, mac, wanted, "64")
        assert settings(machine, mac)["address_ipv6"] == wanted
        assert sorted(machine.global_addresses("va", "-6")) == [(f"2001:db8::{last}", 64) for last in (1, 2, 3)]


def test_a_leased_address_that_is_set_stays_for_good(machine):
    mac = machine.add_pair()
    machine.do("ip", "addr", "add", "192.0.2.10/24", "dev", "va", "valid_lft", "1000", "preferred_lft", "900")
    assert settings_after(machine, mac, "192.0.2.10")["dhcp"] == "No"
    assert machine.global_addresses("va", "-4") == [("192.0.2.10", 24)]


ALL_OF_AN_ADDRESS = {
    "-4": [
        ["192.0.2.10/24", "broadcast", "192.0.2.255", "label", "va:one", "valid_lft", "1000", "preferred_lft", "900",
         "metric", "77"],
        ["203.0.113.5/24", "noprefixroute", "label", "va:two"],
        ["192.0.2.11/24", "valid_lft", "2000", "preferred_lft", "1900", "label", "va:three"],
        ["198.51.100.10", "peer", "198.51.100.1/32", "label", "va:four"],
    ],
    "-6": [
        ["2001:db8::1/64", "nodad", "noprefixroute"],
        ["2001:db8::2/64", "nodad", "valid_lft", "1000", "preferred_lft", "900", "metric", "77"],
        ["2001:db8:1::1", "peer", "2001:db8:1::2/128", "nodad", "home"],
        ["2001:db8::3/64", "nodad", "mngtmpaddr", "valid_lft", "1000", "preferred_lft", "900"],
    ],
}


@pytest.mark.parametrize("promotion", PROMOTIONS)
@pytest.mark.parametrize("first", [0, 1, 2])
def test_a_refused_change_leaves_all_of_every_ipv4_address(machine, promotion, first):
    mac = machine.add_pair()
    set_promotion(machine, promotion)
    added = ALL_OF_AN_ADDRESS["-4"]
    for options in added[first:] + added[:first]:
        machine.do("ip", "addr", "add", *options, "dev", "va")
    before = told(machine, "-4")
    for address in ("192.0.2.20", "192.0.2.11", "203.0.113.20"):
        assert "198.18.0.1" in set_ipv4(machine, mac, address, "255.255.255.0", "198.18.0.1")
        assert_same_addresses(told(machine, "-4"), before)


def test_a_refused_change_leaves_all_of_every_ipv6_address(machine):
    mac = machine.add_pair()
    machine.do("sysctl", "-w", "net.ipv6.conf.va.use_tempaddr=2")
    for options in ALL_OF_AN_ADDRESS["-6"]:
        machine.do("ip", "-6", "addr", "add", *options, "dev", "va")
    machine.wait_for_link_local("va")
    before = told(machine, "-6")
    temporary = [entry["local"] for entry in machine.ip("-6", "addr", "show", "dev", "va")[0]["addr_info"]
                 if entry.get("temporary")]
    assert temporary
    for address in ("2001:db8::20", "2001:db8::1"):
        assert "2001:db8:9::9" in set_ipv6(machine, mac, address, "64", "2001:db8:9::9")
        now = told(machine, "-6")
        assert_same_addresses(sorted(now, key=address_of), sorted(before, key=address_of))
        assert order_of_those_for_good(now) == order_of_those_for_good(before)
    assert temporary == [entry["local"] for entry in machine.ip("-6", "addr", "show", "dev", "va")[0]["addr_info"]
                         if entry.get("temporary")], "nothing touched them, nor made them permanent"


def test_a_change_leaves_all_of_the_other_addresses(machine):
    mac = machine.add_pair()
    machine.do("ip", "addr", "add", "192.0.2.10/24", "dev", "va")
    for options in ALL_OF_AN_ADDRESS["-4"][1:]:
        machine.do("ip", "addr", "add", *options, "dev", "va")
    before = sorted(told(machine, "-4")[1:], key=address_of)
    set_ipv4(machine, mac, "192.0.2.20", "255.255.255.0", "0.0.0.0")
    now = told(machine, "-4")
    assert now[0]["local"] == "192.0.2.20"
    assert_same_addresses(sorted(now[1:], key=address_of), before)


def test_a_point_to_point_address_is_replaced(machine):
    mac = machine.add_pair()
    machine.do("ip", "addr", "add", "192.0.2.10", "peer", "198.51.100.1/32", "dev", "va")
    set_ipv4(machine, mac, "192.0.2.20", "255.255.255.0", "0.0.0.0")
    assert machine.global_addresses("va", "-4") == [("192.0.2.20", 24)]
    machine.do("ip", "addr", "add", "2001:db8::1", "peer", "2001:db8::2/128", "dev", "va", "nodad")
    set_ipv6(machine, mac, "::", "64")
    assert machine.global_addresses("va", "-6") == []


def test_routes_of_other_tables_and_of_the_replaced_source_stay(machine):
    mac = machine.add_pair()
    machine.add_pair("vc", "vd")
    machine.do("ip", "addr", "add", "192.0.2.10/24", "dev", "va")
    machine.do("ip", "addr", "add", "198.51.100.7/24", "dev", "vc")
    made = [
        ["default", "via", "192.0.2.1", "dev", "va", "src", "192.0.2.10", "table", "100"],
        ["198.18.0.0/16", "via", "192.0.2.9", "dev", "va", "table", "100", "metric", "5", "mtu", "1400"],
        ["198.19.0.0/16", "via", "192.0.2.9", "dev", "va", "src", "192.0.2.10", "proto", "bird"],
        ["198.19.0.0/16", "via", "198.51.100.9", "dev", "vc", "src", "192.0.2.10", "metric", "9"],
        ["203.0.113.0/24", "dev", "va", "scope", "link", "metric", "3"],
        ["203.0.112.0/24", "via", "203.0.113.9", "dev", "va", "metric", "2"],
        ["198.20.0.0/16", "nexthop", "via", "192.0.2.8", "dev", "va", "weight", "3", "nexthop", "via",
         "198.51.100.9", "dev", "vc"],
        ["unreachable", "198.21.0.0/16", "table", "100"],
    ]
    for route in made:
        machine.do("ip", "route", "add", *route)
    machine.do("ip", "route", "append", "198.18.0.0/16", "via", "192.0.2.8", "dev", "va", "table", "100", "metric", "5")
    before = routes(machine, "-4")
    set_ipv4(machine, mac, "192.0.2.20", "255.255.255.0", "192.0.2.1")
    expected = [[(key, "192.0.2.20" if value == "192.0.2.10" else value) for key, value in route] for route in before]
    new_default = [route for route in routes(machine, "-4", "default") if ("table", "100") not in route]
    assert len(new_default) == 1
    assert [route for route in routes(machine, "-4") if route not in new_default] == sorted(expected, key=str)


def test_ipv6_routes_of_the_replaced_source_stay(machine):
    mac = machine.add_pair()
    machine.do("ip", "-6", "addr", "add", "2001:db8::1/64", "dev", "va", "nodad")
    for table in ("main", "100"):
        machine.do("ip", "-6", "route", "add", "2001:db8:5::/64", "via", "2001:db8::9", "dev", "va", "src", "2001:db8::1",
                   "table", table)
    before = routes(machine, "-6")
    set_ipv6(machine, mac, "2001:db8::2", "64")
    assert routes(machine, "-6") == [
        [(key, "2001:db8::2" if value == "2001:db8::1" else value) for key, value in route] for route in before]


@pytest.mark.parametrize("metric", ["55", "0"])
def test_routes_that_look_like_those_of_the_kernel_stay(machine, metric):
    mac = machine.add_pair()
    machine.do("ip", "addr", "add", "192.0.2.10/24", "dev", "va", "noprefixroute")
    machine.do("ip", "route", "add", "192.0.2.0/24", "dev", "va", "proto", "kernel", "metric", metric)
    machine.do("ip", "route", "add", "local", "198.51.100.0/24", "dev", "va", "table", "local")

    def made():
        return sorted(str((route["dst"], route.get("metric"), route["protocol"], route["type"]))
                      for route in machine.ip("-4", "route", "show", "table", "all", "dev", "va")
                      if "192.0.2.10" not in route["dst"] and "192.0.2.20" not in route["dst"])
    before = made()
    set_ipv4(machine, mac, "192.0.2.20", "255.255.255.0", "0.0.0.0")
    assert machine.global_addresses("va", "-4") == [("192.0.2.20", 24)]
    assert made() == before


@pytest.mark.parametrize("last", [1, 2])
def test_routes_among_equals_keep_their_place(machine, last):
    """One that counts before that of another interface still does; one behind it stays behind."""
    macs = {"va": machine.add_pair(), "vc": machine.add_pair("vc", "vd")}
    machine.do("ip", "addr", "add", "192.0.2.10/24", "dev", "va")
    machine.do("ip", "addr", "add", "198.51.100.10/24", "dev", "vc")
    ways = [("192.0.2.1", "va"), ("192.0.2.2", "va"), ("198.51.100.1", "vc")]
    for gateway, name in ways[last:] + ways[:last]:
        machine.do("ip", "route", "append", "default", "via", gateway, "dev", name)
    before = machine.ip("-4", "route", "show", "default")
    if last == 1:
        set_ipv4(machine, macs["va"], "192.0.2.20", "255.255.255.0", before[0]["gateway"])
    screen = set_ipv4(machine, macs["vc"], "198.51.100.20", "255.255.255.0", "198.51.100.1")
    assert machine.ip("-4", "route", "show", "default") == before
    assert ("stands between those of other interfaces" in screen) == (last == 1)


def test_the_new_address_has_the_metric_and_the_network_route_of_the_former_one(machine):
    mac = machine.add_pair()
    machine.do("ip", "addr", "add", "192.0.2.10/24", "dev", "va", "metric", "200")
    machine.do("ip", "-6", "addr", "add", "2001:db8::1/64", "dev", "va", "metric", "300", "noprefixroute", "nodad")
    set_ipv4(machine, mac, "192.0.2.20", "255.255.255.0", "0.0.0.0")
    assert [(one["local"], one["metric"]) for one in told(machine, "-4")] == [("192.0.2.20", 200)]
    set_ipv4(machine, mac, "198.51.100.20", "255.255.255.0", "0.0.0.0")
    assert [(one["dst"], one["metric"]) for one in machine.ip("-4", "route", "show", "dev", "va")] == [
        ("198.51.100.0/24", 200)]
    set_ipv6(machine, mac, "2001:db8::2", "64")
    assert [(one["local"], one["metric"], one.get("noprefixroute")) for one in told(machine, "-6")] == [
        ("2001:db8::2", 300, True)]
    set_ipv6(machine, mac, "2001:db8:1::2", "64")
    assert [(one["local"], one["metric"], one.get("noprefixroute")) for one in told(machine, "-6")] == [
        ("2001:db8:1::2", 300, None)], "in another network it would reach nobody without a route"


def test_an_announced_gateway_that_is_set_stays_for_good(machine):
    mac = machine.add_pair()
    machine.do("ip", "-6", "addr", "add", "2001:db8::1/64", "dev", "va", "nodad")
    machine.do("ip", "-6", "route", "add", "default", "via", "fe80::1", "dev", "va", "expires", "900", "metric", "50")
    set_ipv6(machine, mac, "2001:db8::1", "64", "fe80::1")
    assert [(one["gateway"], one["metric"], one.get("expires")) for one in machine.ip("-6", "route", "show", "default")
            ] == [("fe80::1", 50, None)]


def test_a_route_with_very_many_next_hops_stays_and_is_in_nobodys_way(machine):
    mac = machine.add_pair()
    other = machine.add_pair("vc", "vd")
    machine.do("ip", "addr", "add", "192.0.2.10/24", "dev", "va")
    machine.do("ip", "addr", "add", "198.51.100.10/24", "dev", "vc")
    hops = [("nexthop", "via", f"{net}.{last}", "dev", name)
            for last in range(20, 148) for name, net in (("va", "192.0.2"), ("vc", "198.51.100"))][:MOST_NEXT_HOPS]
    machine.do("ip", "route", "add", "198.18.0.0/15", "src", "192.0.2.10", *(word for hop in hops for word in hop))

    def source():
        return machine.ip("-4", "route", "get", "198.18.0.9")[0]["prefsrc"]
    assert settings(machine, other)["address"] == "198.51.100.10"
    assert "Routes would go" in set_ipv4(machine, mac, "203.0.113.10", "255.255.255.0", "0.0.0.0")
    assert source() == "192.0.2.10"
    set_ipv4(machine, mac, "192.0.2.12", "255.255.255.0", "192.0.2.1")
    assert machine.global_addresses("va", "-4") == [("192.0.2.12", 24)]
    assert source() == "192.0.2.12"


@pytest.mark.parametrize("address, gateway, lost", [
    ("198.51.100.10", "198.51.100.1", ["198.18.0.0/15"]),  # the kernel keeps the other ones
    ("0.0.0.0", "0.0.0.0", ["198.18.0.0/15", "198.20.0.0/15 192.0.2.9 in table 100"]),
])
def test_a_change_that_would_lose_a_route_is_refused_and_taken_back(machine, address, gateway, lost):
    mac = machine.add_pair()
    machine.do("ip", "addr", "add", "192.0.2.10/24", "dev", "va", "label", "va:one")
    machine.do("ip", "route", "add", "default", "via", "192.0.2.1", "dev", "va")
    machine.do("ip", "route", "add", "198.18.0.0/15", "via", "192.0.2.9", "dev", "va", "src", "192.0.2.10")
    machine.do("ip", "route", "add", "198.20.0.0/15", "via", "192.0.2.9", "dev", "va", "table", "100")
    before = told(machine, "-4"), routes(machine, "-4")
    screen = " ".join(set_ipv4(machine, mac, address, "255.255.255.0", gateway).split())
    assert "Routes would go with the former address." in screen
    for route in lost:
        assert f"the route to {route}" in screen, screen
    assert screen.count("restoring the route to") == len(lost)
    assert_same_addresses(told(machine, "-4"), before[0])
    assert routes(machine, "-4") == before[1]
