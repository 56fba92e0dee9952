"""How recordings are shared out to tasks."""
from orvantis_zones.batch._shares import Shares


def test_one_by_one_until_it_is_known_what_they_take():
    shares = Shares({k: False for k in range(1000)})
    assert [shares.take(8) for _ in range(2)] == [([0], False), ([1], False)]
    shares.learn(0.02)
    shares.learn(0.03)
    assert shares.take(8) == (list(range(2, 12)), False)
    shares.learn(0.5)
    assert shares.take(8) == ([12], False)


def test_no_task_gets_what_other_workers_could_do():
    shares = Shares({k: False for k in range(20)})
    shares.learn(0.0001)
    taken = [shares.take(8)[0] for _ in range(20) if shares]
    assert sum(taken, []) == list(range(20)) and [len(share) for share in taken][:3] == [3, 3, 2]
    assert not shares


def test_no_task_is_without_end():
    shares = Shares({k: False for k in range(10_000)})
    shares.learn(0.0)
    assert len(shares.take(8)[0]) == 100


def test_one_with_a_process_of_its_own_is_alone():
    shares = Shares({0: False, 1: True, 2: False, 3: False})
    shares.learn(0.0001)
    assert [shares.take(1) for _ in range(3)] == [([0], False), ([1], True), ([2, 3], False)]


def test_what_is_put_back_comes_next_in_its_order():
    shares = Shares({0: False, 1: False})
    shares.take(1), shares.take(1)
    shares.put([5], False)
    shares.put([7, 8], True)
    assert [shares.take(1) for _ in range(3)] == [([7], True), ([8], True), ([5], False)]
