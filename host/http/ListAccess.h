#pragma once

#include <deque>
#include <set>
#include <string>

#include "host/presentation/ListName.h"
#include "journalservice/JournalServiceIfc.h"

/// The five lists of the journal behind one set of operations, so that whoever serves them writes the road
/// once.
namespace host::listaccess {

using Ids = std::set<std::string>;

struct Missed {
    using Item = MissedCallItem;
    static void read(JournalServiceIfc& journal, std::deque<Item>& items) {
        journal.getMissedCallList(items);
    }
    static bool find(JournalServiceIfc& journal, const std::string& id, Item& item) {
        return journal.getMissedCall(id, item);
    }
    static bool remove(JournalServiceIfc& journal, const std::string& id) {
        return journal.deleteMissedCall(id, false);
    }
    static void remove(JournalServiceIfc& journal, const Ids& ids) { journal.deleteMissedCallList(ids); }
    static void clear(JournalServiceIfc& journal) { journal.deleteMissedCallList(); }
};

struct Dialled {
    using Item = DialledCallItem;
    static void read(JournalServiceIfc& journal, std::deque<Item>& items) {
        journal.getDialledCallList(items);
    }
    static bool find(JournalServiceIfc& journal, const std::string& id, Item& item) {
        return journal.getDialledCall(id, item);
    }
    static bool remove(JournalServiceIfc& journal, const std::string& id) {
        return journal.deleteDialledCall(id);
    }
    static void remove(JournalServiceIfc& journal, const Ids& ids) { journal.deleteDialledCallList(ids); }
    static void clear(JournalServiceIfc& journal) { journal.deleteDialledCallList(); }
};

struct Received {
    using Item = ReceivedCallItem;
    static void read(JournalServiceIfc& journal, std::deque<Item>& items) {
        journal.getReceivedCallList(items);
    }
    static bool find(JournalServiceIfc& journal, const std::string& id, Item& item) {
        return journal.getReceivedCall(id, item);
    }
    static bool remove(JournalServiceIfc& journal, const std::string& id) {
        return journal.deleteReceivedCall(id);
    }
    static void remove(JournalServiceIfc& journal, const Ids& ids) { journal.deleteReceivedCallList(ids); }
    static void clear(JournalServiceIfc& journal) { journal.deleteReceivedCallList(); }
};

struct Forwarded {
    using Item = ForwardedCallItem;
    static void read(JournalServiceIfc& journal, std::deque<Item>& items) {
        journal.getForwardedCallList(items);
    }
    static bool find(JournalServiceIfc& journal, const std::string& id, Item& item) {
        return journal.getForwardedCall(id, item);
    }
    static bool remove(JournalServiceIfc& journal, const std::string& id) {
        return journal.deleteForwardedCall(id);
    }
    static void remove(JournalServiceIfc& journal, const Ids& ids) { journal.deleteForwardedCallList(ids); }
    static void clear(JournalServiceIfc& journal) { journal.deleteForwardedCallList(); }
};

struct CallBacks {
    using Item = CallBackItem;
    static void read(JournalServiceIfc& journal, std::deque<Item>& items) { journal.getCallBackList(items); }
    static bool find(JournalServiceIfc& journal, const std::string& id, Item& item) {
        std::deque<Item> items;
        journal.getCallBackList(items);
        for (const Item& each : items) {
            if (each.getEntryId() == id) {
                item = each;
                return true;
            }
        }
        return false;
    }
    static bool remove(JournalServiceIfc& journal, const std::string& id) {
        return journal.deleteCallBack(id);
    }
    static void remove(JournalServiceIfc& journal, const Ids& ids) { journal.deleteCallBackList(ids); }
    static void clear(JournalServiceIfc& journal) { journal.deleteCallBackList(); }
};

/// Calls `work` with the operations of that list and answers its answer.
template <typename Work>
auto with(ListName list, Work&& work) {
    switch (list) {
        case ListName::eMissed: return work(Missed());
        case ListName::eDialled: return work(Dialled());
        case ListName::eReceived: return work(Received());
        case ListName::eForwarded: return work(Forwarded());
        case ListName::eCallbacks: break;
    }
    return work(CallBacks());
}

}  // namespace host::listaccess
