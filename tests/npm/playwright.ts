// What a test of Playwright's runner may write: every line must compile.
import { test as base, expect as plain } from '@playwright/test';
import { voiceFixtures, voiceMatchers, type VoiceFixtures } from 'corvis-voiceinteraction/playwright';

const test = base.extend<VoiceFixtures>(voiceFixtures);
const expect = plain.extend(voiceMatchers);
test.use({ voiceOptions: { privileges: [], timeout: 100 } });
test('answers', async ({ voice }) => {
  await voice.say('pause');
  await expect(voice).not.toAnswer(/film$/);
  await expect(voice).toSend('ACTION_MEDIA_SET_PLAY_POSITION', '90');
  await expect(voice).toAnswer({ at: 90 });
});
