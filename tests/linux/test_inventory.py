"""Which interfaces are ports, and what their adapters and functions are called."""


def test_loopback_and_bridges_are_no_ports(machine):
    machine.do("ip", "link", "add", "br0", "type", "bridge")
    screen = machine.cli("-showadapter")
    assert "Adapter  " not in screen and "br0" not in screen


def test_veth_macvlan_and_tap_are_ports(machine):
    machine.add_pair()
    machine.do("ip", "link", "add", "link", "va", "name", "mv0", "type", "macvlan")
    machine.do("ip", "tuntap", "add", "dev", "tap0", "mode", "tap")
    machine.do("ip", "tuntap", "add", "dev", "tun0", "mode", "tun")
    screen = machine.cli("-showadapter")
    for adapter in ("veth va", "veth vb", "macvlan mv0", "tun tap0"):
        assert f": {adapter}\n" in screen
    assert "tun0" not in screen
    for name in ("va", "vb", "mv0", "tap0"):
        assert screen.count(f"Port Identifier                   : {machine.mac(name)}\n") == 2
